// What a result buffer's type code says about the value it carries. The
// code is either an RT code of the editor interface or a DXF group code.
#pragma once

namespace cadhost {

enum class ValueKind { None, String, Real, Point, Short, Long, Int64, EntityName, Binary, Handle };

ValueKind KindOfCode(int code);

}  // namespace cadhost
