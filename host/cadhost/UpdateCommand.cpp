#include "UpdateCommand.h"

#include <dbapserv.h>
#include <dbents.h>

#include <filesystem>
#include <optional>

#include "app/Host.h"
#include "core/Utf8.h"
#include "fields/FieldUpdate.h"

namespace cadhost {
namespace {

const char* const kUpdateUsage = "usage: cadhost update DRAWING [-o OUT] [--settings DIR]\n";
const wchar_t kEvaluators[] = L"QuillmarkEval.dbx";

std::string HandleOf(AcDbObjectId id) {
    ACHAR text[32] = L"";
    id.handle().getIntoAsciiBuffer(text, 32);
    return ToUtf8(text);
}

std::string Count(int n, const char* one, const char* many) { return std::to_string(n) + " " + (n == 1 ? one : many); }

}  // namespace

int RunUpdate(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors) {
    std::optional<std::filesystem::path> drawing, output;
    std::filesystem::path settings;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const std::string& arg = arguments[i];
        if (arg == "-o" || arg == "--settings") {
            if (i + 1 >= arguments.size()) {
                errors << "cadhost update: " << arg << " needs a value\n" << kUpdateUsage;
                return 2;
            }
            if (arg == "-o") output = arguments[++i];
            else settings = arguments[++i];
        } else if (!arg.empty() && arg[0] == '-') {
            errors << "cadhost update: unknown option " << arg << "\n" << kUpdateUsage;
            return 2;
        } else if (!drawing) {
            drawing = arg;
        } else {
            errors << "cadhost update: only one drawing can be given\n" << kUpdateUsage;
            return 2;
        }
    }
    if (!drawing) {
        errors << "cadhost update: no drawing was given\n" << kUpdateUsage;
        return 2;
    }

    HostOptions options;
    options.settingsFolder = settings;
    options.output = &out;
    Host host(options);
    std::wstring error;
    if (!host.OpenDrawing(*drawing, error)) {
        host.commandLine().FinishLine();
        errors << "cadhost update: " << ToUtf8(error) << "\n";
        return 2;
    }
    // Without the evaluators every field would fail and lose its value.
    if (!host.linker().loadModule(kEvaluators, false)) {
        host.commandLine().FinishLine();
        errors << "cadhost update: the evaluators' module " << ToUtf8(kEvaluators)
               << " cannot be loaded; the drawing is left as it was\n";
        return 2;
    }
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    FieldUpdateReport report = UpdateFields(*database, AcDbField::kRegen);
    host.commandLine().FinishLine();

    std::filesystem::path target = output ? *output : *drawing;
    if (!host.SaveDrawing(target, error)) {
        errors << "cadhost update: " << ToUtf8(error) << "\n";
        return 2;
    }
    out << "Updated " << target.string() << ": " << Count(report.evaluated, "field", "fields") << " evaluated, "
        << report.changed << " changed, " << report.failed.size() << " failed";
    if (!report.skipped.empty()) out << ", " << report.skipped.size() << " without evaluator";
    if (!report.notEvaluated.empty()) out << ", " << report.notEvaluated.size() << " not evaluated";
    out << ".\n";
    for (const FieldFailure& failure : report.failed) {
        out << "  failed: text " << HandleOf(failure.text) << " " << ToUtf8(failure.code) << ": "
            << ToUtf8(failure.message) << "\n";
    }
    for (const FieldFailure& skipped : report.skipped) {
        out << "  kept: text " << HandleOf(skipped.text) << " " << ToUtf8(skipped.code) << ": "
            << ToUtf8(skipped.message) << "\n";
    }
    for (const FieldFailure& left : report.notEvaluated) {
        out << "  not evaluated: text " << HandleOf(left.text) << " " << ToUtf8(left.code) << ": "
            << ToUtf8(left.message) << "\n";
    }
    return report.failed.empty() && report.notEvaluated.empty() ? 0 : 1;
}

}  // namespace cadhost
