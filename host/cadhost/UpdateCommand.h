// cadhost update DRAWING [-o OUT] [--settings DIR]: re-evaluates every field
// of a drawing and writes it back (or to OUT) atomically.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace cadhost {

// The arguments behind "update". Answers the exit status: 0 when every
// field evaluated, 1 when the drawing was written but some fields failed or
// could not be evaluated, 2 when nothing was written (bad arguments, an
// unreadable drawing, no evaluators, a failed write).
int RunUpdate(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors);

}  // namespace cadhost
