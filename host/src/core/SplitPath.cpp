// _wsplitpath of the C runtime: a path cut into drive, folder, name and
// extension.
#include <tchar.h>

#include <cwchar>
#include <string>

namespace {

void Put(wchar_t* target, size_t capacity, const std::wstring& part) {
    if (!target) return;
    size_t length = part.size() < capacity ? part.size() : capacity - 1;
    std::wmemcpy(target, part.c_str(), length);
    target[length] = L'\0';
}

}  // namespace

extern "C" void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext) {
    std::wstring rest = path ? path : L"";
    std::wstring driveText;
    if (rest.size() >= 2 && rest[1] == L':') {
        driveText = rest.substr(0, 2);
        rest = rest.substr(2);
    }
    size_t slash = rest.find_last_of(L"/\\");
    std::wstring folder = slash == std::wstring::npos ? std::wstring() : rest.substr(0, slash + 1);
    std::wstring file = slash == std::wstring::npos ? rest : rest.substr(slash + 1);
    size_t dot = file.rfind(L'.');
    std::wstring name = dot == std::wstring::npos ? file : file.substr(0, dot);
    std::wstring extension = dot == std::wstring::npos ? std::wstring() : file.substr(dot);
    Put(drive, _MAX_DRIVE, driveText);
    Put(dir, _MAX_DIR, folder);
    Put(fname, _MAX_FNAME, name);
    Put(ext, _MAX_EXT, extension);
}
