// Simple classes described by one table of their groups, which drives both
// their reading and their writing: the writer writes, in the table's order,
// exactly the groups the reader takes.
//
//     using G = GroupsOf<AcDbLine>;
//     constexpr GroupEntry<AcDbLine> kLineGroups[] = {
//         G::Marker("AcDbLine"),
//         G::Point<&AcDbLine::startPoint, &AcDbLine::setStartPoint>(10),
//         G::Point<&AcDbLine::endPoint, &AcDbLine::setEndPoint>(11),
//     };
//     {.dxfName = "LINE", ..., .read = TableReads<kLineGroups>,
//      .finish = TableFinishes<kLineGroups>, .write = TableWrites<kLineGroups>, ...}
//
// A point takes its code and the codes 10 and 20 above it as one group. An
// optional group is written when the file had it (a bit of fileGroups) or
// when its value is not its default. The normal (210) is read into the read
// struct and set once the object ends, as a unit vector, when the file had it.
#pragma once

#include <dbmain.h>

#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "dxf/EntityGroups.h"

namespace cadhost::dxf {

enum class GroupKind { kMarker, kPoint, kReal, kInteger, kText, kNormal };

template <class T>
struct GroupEntry {
    using Object = T;
    GroupKind kind = GroupKind::kMarker;
    int code = 100;
    std::string_view marker;  // the subclass, for markers
    // Optional groups: written when the file had them (hadBit of
    // fileGroups, noted when read) or when the value is not the default.
    bool optional = false;
    Adesk::UInt16 hadBit = 0;
    double realDefault = 0;
    long long integerDefault = 0;
    // A normal that files may also write after a later marker (an arc's,
    // after its angles): read there, it is written there again.
    bool mayTrail = false;
    // Why a value cannot be taken (null when it can), failing the file.
    const char* (*refuse)(double value) = nullptr;
    const char* (*refuseText)(const std::string& utf8) = nullptr;

    AcGePoint3d (*point)(const T&) = nullptr;
    void (*setPoint)(T&, const AcGePoint3d&) = nullptr;
    double (*real)(const T&) = nullptr;
    void (*setReal)(T&, double) = nullptr;
    long long (*integer)(const T&) = nullptr;
    void (*setInteger)(T&, long long) = nullptr;
    std::string (*text)(const T&) = nullptr;  // UTF-8
    void (*setText)(T&, const std::string&) = nullptr;
    AcGeVector3d (*vector)(const T&) = nullptr;
    void (*setVector)(T&, const AcGeVector3d&) = nullptr;
};

// The entries of a class's table, made from its getters and setters (the
// setters may answer a status, which the table does not ask for).
template <class T>
struct GroupsOf {
    using Entry = GroupEntry<T>;

    static constexpr Entry Marker(std::string_view subclass) {
        return {.kind = GroupKind::kMarker, .code = 100, .marker = subclass};
    }
    template <auto Get, auto Set>
    static constexpr Entry Point(int code) {
        return {.kind = GroupKind::kPoint,
                .code = code,
                .point = [](const T& o) -> AcGePoint3d { return Call<Get>(o); },
                .setPoint = [](T& o, const AcGePoint3d& p) { Call<Set>(o, p); }};
    }
    template <auto Get, auto Set>
    static constexpr Entry Real(int code) {
        return {.kind = GroupKind::kReal,
                .code = code,
                .real = [](const T& o) -> double { return Call<Get>(o); },
                .setReal = [](T& o, double v) { Call<Set>(o, v); }};
    }
    template <auto Get, auto Set>
    static constexpr Entry OptionalReal(int code, Adesk::UInt16 hadBit, double byDefault) {
        Entry entry = Real<Get, Set>(code);
        entry.optional = true;
        entry.hadBit = hadBit;
        entry.realDefault = byDefault;
        return entry;
    }
    template <auto Get, auto Set>
    static constexpr Entry Integer(int code) {
        return {.kind = GroupKind::kInteger,
                .code = code,
                .integer = [](const T& o) -> long long { return Call<Get>(o); },
                .setInteger = [](T& o, long long v) { Call<Set>(o, v); }};
    }
    template <auto Get, auto Set>
    static constexpr Entry Text(int code) {
        return {.kind = GroupKind::kText,
                .code = code,
                .text = [](const T& o) -> std::string { return Call<Get>(o); },
                .setText = [](T& o, const std::string& v) { Call<Set>(o, v); }};
    }
    // An entry whose group, when a file has it, is noted in this bit of
    // fileGroups.
    static constexpr Entry Noted(Entry entry, Adesk::UInt16 hadBit) {
        entry.hadBit = hadBit;
        return entry;
    }
    // The normal, 210: optional, its default the z axis.
    template <auto Get, auto Set>
    static constexpr Entry Normal(bool mayTrail = false) {
        return {.kind = GroupKind::kNormal,
                .code = 210,
                .optional = true,
                .hadBit = kHad210,
                .mayTrail = mayTrail,
                .vector = [](const T& o) -> AcGeVector3d { return Call<Get>(o); },
                .setVector = [](T& o, const AcGeVector3d& v) { Call<Set>(o, v); }};
    }

private:
    // A member function or a free function of the object.
    template <auto F, class O, class... A>
    static constexpr decltype(auto) Call(O& o, A&&... a) {
        if constexpr (std::is_member_function_pointer_v<decltype(F)>) return (o.*F)(std::forward<A>(a)...);
        else return F(o, std::forward<A>(a)...);
    }
};

// What the table's reader keeps between the groups of one object.
struct GroupTableRead {
    int part = -1;  // the index of the last marker of the table the object passed
    FileNormal normal;
};

namespace detail {
template <class T>
bool Takes(const GroupEntry<T>& entry, int code) {
    switch (entry.kind) {
    case GroupKind::kMarker: return false;
    case GroupKind::kPoint:
    case GroupKind::kNormal: return IsCoordinate(code, entry.code);
    default: return code == entry.code;
    }
}

template <class T>
Use ReadEntry(T& object, GroupTableRead& read, const GroupEntry<T>& entry, int index, const Group& g, ObjectReader& in) {
    if (entry.hadBit) Note(object, entry.hadBit);
    switch (entry.kind) {
    case GroupKind::kMarker: return Use::kKept;
    case GroupKind::kPoint: {
        AcGePoint3d p = entry.point(object);
        Use use = Coordinate(p, entry.code, g, in);
        entry.setPoint(object, p);
        return use;
    }
    case GroupKind::kReal: {
        double value = in.Real(g);
        if (entry.refuse) {
            if (const char* why = entry.refuse(value)) in.Fail(g, why);
        }
        entry.setReal(object, value);
        return Use::kKnown;
    }
    case GroupKind::kInteger: entry.setInteger(object, in.Integer(g)); return Use::kKnown;
    case GroupKind::kText: {
        std::string text = in.Text(g);
        if (entry.refuseText) {
            if (const char* why = entry.refuseText(text)) in.Fail(g, why);
        }
        entry.setText(object, text);
        return Use::kKnown;
    }
    case GroupKind::kNormal:
        if (entry.mayTrail && read.part > index) Note(object, kNormalLast);
        return read.normal.Read(entry.code, g, in);
    }
    return Use::kKept;
}
}  // namespace detail

template <class T>
Use ReadByTable(std::span<const GroupEntry<T>> table, T& object, GroupTableRead& read, const Group& g, ObjectReader& in) {
    int index = 0;
    for (const GroupEntry<T>& entry : table) {
        if (entry.kind == GroupKind::kMarker) {
            if (IsMarker(g, entry.marker)) {
                if (index > read.part) read.part = index;
                return Use::kKnown;
            }
        } else if (detail::Takes(entry, g.code)) {
            return detail::ReadEntry(object, read, entry, index, g, in);
        }
        ++index;
    }
    return Use::kKept;
}

template <class T>
void FinishByTable(std::span<const GroupEntry<T>> table, T& object, GroupTableRead& read) {
    for (const GroupEntry<T>& entry : table)
        if (entry.kind == GroupKind::kNormal && Had(object, entry.hadBit)) entry.setVector(object, read.normal.Value());
}

namespace detail {
template <class T>
void WriteEntry(const GroupEntry<T>& entry, const T& object, ObjectWriter& out) {
    switch (entry.kind) {
    case GroupKind::kMarker: out.Marker(entry.marker); return;
    case GroupKind::kPoint: out.Point(entry.code, entry.point(object)); return;
    case GroupKind::kReal: {
        double value = entry.real(object);
        if (!entry.optional || Had(object, entry.hadBit) || value != entry.realDefault) out.Real(entry.code, value);
        return;
    }
    case GroupKind::kInteger: {
        long long value = entry.integer(object);
        if (!entry.optional || Had(object, entry.hadBit) || value != entry.integerDefault)
            out.Integer(entry.code, value);
        return;
    }
    case GroupKind::kText: out.Text(entry.code, entry.text(object)); return;
    case GroupKind::kNormal: WriteNormal(out, object, entry.vector(object)); return;
    }
}
}  // namespace detail

template <class T>
void WriteByTable(std::span<const GroupEntry<T>> table, const T& object, ObjectWriter& out) {
    const GroupEntry<T>* trailing = nullptr;
    for (const GroupEntry<T>& entry : table) {
        if (entry.mayTrail && Had(object, kNormalLast)) {
            trailing = &entry;
            continue;
        }
        detail::WriteEntry(entry, object, out);
    }
    if (trailing) detail::WriteEntry(*trailing, object, out);
}

// The table's read, finish and write in the registry's forms:
// .read = Reads<ByTable<kGroups>::Read>, .finish = Finishes<ByTable<kGroups>::Finish>,
// .write = ByTable<kGroups>::Write.
template <auto& Table>
struct ByTable {
    using T = typename std::remove_cvref_t<decltype(Table[0])>::Object;
    static Use Read(T& object, GroupTableRead& read, const Group& g, ObjectReader& in) {
        return ReadByTable<T>(Table, object, read, g, in);
    }
    static void Finish(T& object, GroupTableRead& read, ObjectReader&) { FinishByTable<T>(Table, object, read); }
    static void Write(const AcDbObject& object, ObjectWriter& out) {
        WriteByTable<T>(Table, static_cast<const T&>(object), out);
    }
};

}  // namespace cadhost::dxf
