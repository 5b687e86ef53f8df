#include "ads/ResbufTypes.h"

#include <adsdef.h>

namespace cadhost {

ValueKind KindOfCode(int code) {
    switch (code) {
    case RTNONE: case RTVOID: case RTLB: case RTLE: case RTDOTE: case RTNIL: case RTT: return ValueKind::None;
    case RTREAL: case RTANG: return ValueKind::Real;
    case RTPOINT: case RT3DPOINT: return ValueKind::Point;
    case RTSHORT: return ValueKind::Short;
    case RTSTR: case RTDXF0: return ValueKind::String;
    case RTENAME: case RTPICKS: return ValueKind::EntityName;
    case RTLONG: return ValueKind::Long;
    case RTINT64: return ValueKind::Int64;
    default: break;
    }
    auto in = [code](int low, int high) { return code >= low && code <= high; };
    if (code == -1 || code == -2) return ValueKind::EntityName;
    if (code == -3) return ValueKind::None;
    if (code == -4 || code == 999) return ValueKind::String;
    if (in(0, 9) || in(100, 109) || in(300, 309) || in(410, 419) || in(430, 439) || in(470, 479) ||
        in(1000, 1003) || in(1005, 1009))
        return code == 105 || code == 1005 ? ValueKind::Handle : ValueKind::String;
    if (in(10, 17) || in(110, 112) || in(210, 219) || in(1010, 1013)) return ValueKind::Point;
    if (in(38, 59) || in(140, 149) || in(460, 469) || in(1014, 1059)) return ValueKind::Real;
    if (in(60, 79) || in(170, 179) || in(270, 289) || in(290, 299) || in(370, 389) || in(400, 409) ||
        in(1060, 1070))
        return ValueKind::Short;
    if (in(90, 99) || in(420, 429) || in(440, 459) || code == 1071) return ValueKind::Long;
    if (in(160, 169)) return ValueKind::Int64;
    if (in(310, 319) || code == 1004) return ValueKind::Binary;
    if (in(320, 369) || in(390, 399) || in(480, 481)) return ValueKind::EntityName;
    return ValueKind::None;
}

}  // namespace cadhost
