#include "editor/EditorInput.h"

namespace cadhost {

void EditorInput::Pick(std::vector<std::wstring> handles) {
    EditorAnswer answer;
    answer.kind = EditorAnswer::Kind::kPick;
    answer.handles = std::move(handles);
    m_answers.push_back(std::move(answer));
}

void EditorInput::Point(double x, double y, double z) {
    EditorAnswer answer;
    answer.kind = EditorAnswer::Kind::kPoint;
    answer.point[0] = x;
    answer.point[1] = y;
    answer.point[2] = z;
    m_answers.push_back(answer);
}

void EditorInput::Escape() { m_answers.push_back(EditorAnswer()); }

EditorAnswer EditorInput::Next() {
    if (m_answers.empty()) return EditorAnswer();
    EditorAnswer answer = std::move(m_answers.front());
    m_answers.pop_front();
    return answer;
}

}  // namespace cadhost
