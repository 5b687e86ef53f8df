// What the user answers at the editor's prompts, queued ahead by a script
// (or a test): picked objects, a point, or Escape. An empty queue answers
// like Escape.
#pragma once

#include <deque>
#include <string>
#include <vector>

namespace cadhost {

struct EditorAnswer {
    enum class Kind { kPick, kPoint, kEscape };
    Kind kind = Kind::kEscape;
    std::vector<std::wstring> handles;  // kPick
    double point[3] = {0, 0, 0};        // kPoint, in the current user coordinate system
};

class EditorInput {
public:
    void Pick(std::vector<std::wstring> handles);
    void Point(double x, double y, double z);
    void Escape();
    // The next answer, taken from the queue; Escape when it is empty.
    EditorAnswer Next();
    size_t pending() const { return m_answers.size(); }
    void Clear() { m_answers.clear(); }

private:
    std::deque<EditorAnswer> m_answers;
};

}  // namespace cadhost
