// Result buffers and the codes of the editor interface.
#pragma once

#include "adesk.h"

typedef double ads_real;
typedef ads_real ads_point[3];
typedef Adesk::LongPtr ads_name[2];
typedef ads_real ads_matrix[4][4];
typedef ads_real* ads_pointp;
typedef Adesk::LongPtr* ads_namep;

enum { X = 0, Y = 1, Z = 2 };

#define RTNONE 5000
#define RTREAL 5001
#define RTPOINT 5002
#define RTSHORT 5003
#define RTANG 5004
#define RTSTR 5005
#define RTENAME 5006
#define RTPICKS 5007
#define RTORINT 5008
#define RT3DPOINT 5009
#define RTLONG 5010
#define RTVOID 5014
#define RTLB 5016
#define RTLE 5017
#define RTDOTE 5018
#define RTNIL 5019
#define RTDXF0 5020
#define RTT 5021
#define RTRESBUF 5023
#define RTMODELESS 5027
#define RTLONG_PTR 5029
#define RTINT64 5031

#define RTNORM 5100
#define RTERROR (-5001)
#define RTCAN (-5002)
#define RTREJ (-5003)
#define RTFAIL (-5004)
#define RTKWORD (-5005)
#define RTINPUTTRUNCATED (-5008)

struct ads_binary {
    short clen;
    char* buf;
};

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    ACHAR* rstring;
    Adesk::LongPtr rlname[2];
    Adesk::LongPtr mnLongPtr;
    Adesk::Int32 rlong;
    Adesk::Int64 mnInt64;
    ads_binary rbinary;
    unsigned char ihandle[8];
};

struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};

#define ads_point_set(from, to) (*(to) = *(from), (to)[1] = (from)[1], (to)[2] = (from)[2])
#define ads_name_set(from, to) (*(to) = *(from), (to)[1] = (from)[1])
#define ads_name_clear(name) ((name)[0] = (name)[1] = 0)
#define ads_name_nil(name) ((name)[0] == 0 && (name)[1] == 0)
#define ads_name_equal(a, b) ((a)[0] == (b)[0] && (a)[1] == (b)[1])
