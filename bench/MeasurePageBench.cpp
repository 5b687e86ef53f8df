// The Objects Area page and the AcArea evaluator on a big selection. Makes a
// drawing of OBJECTS lightweight polylines (rooms, some with arc segments)
// and circles, saves it for ezdxf, then runs the module in the host as a
// user would: the Field dialog on the Objects Area page, one pick of PICKED
// handles in a shuffled order, and the page's other events on that list
// (units, precision, a removal, the Additional Format dialog's keystrokes
// and its OK, the filter's OK). Last it evaluates an AcArea field over the
// picked handles on its own.
//
//     bench_MeasurePageBench FOLDER [OBJECTS] [PICKED]
//
// Writes FOLDER/measure.dxf and FOLDER/picked.txt (the picked handles, one a
// line) and prints key=value lines: seconds of each event, the slowest of
// the events that must stay under 16 ms, and the evaluated sum.
#include <adslib.h>
#include <dbents.h>
#include <dbfield.h>
#include <dbpl.h>
#include <dbsymtb.h>

#include <AcFdUi.h>

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "HostResource.h"
#include "app/HugePageHeap.h"
#include "app/Host.h"
#include "core/Utf8.h"
#include "ui/Controls.h"
#include "ui/Desktop.h"
#include "ui/UiDriver.h"
#include "ui/UserInput.h"

namespace {

using Clock = std::chrono::steady_clock;

double Seconds(Clock::time_point from) { return std::chrono::duration<double>(Clock::now() - from).count(); }

// The processor time of this thread: on a machine that others share, the
// wall time of an event grows with their load, this does not.
double CpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// A stretch of work, timed both ways.
struct Stopwatch {
    Clock::time_point wall = Clock::now();
    double cpu = CpuSeconds();
    double Wall() const { return Seconds(wall); }
    double Cpu() const { return CpuSeconds() - cpu; }
};

// The page's controls and those of its dialogs.
constexpr int kObjectList = 101, kPreview = 104, kUnitsList = 105, kAdditionalFormat = 107, kSelect = 203,
              kRemove = 204, kPrecision = 207, kFilter = 234, kFactor = 110, kPrefix = 111;

std::wstring HandleText(AcDbObjectId id) {
    ACHAR text[32] = L"";
    id.handle().getIntoAsciiBuffer(text, 32);
    return text;
}

// Rooms of four to six corners, every third with an arc on its first side,
// and circles between them.
std::vector<std::wstring> MakeDrawing(AcDbDatabase& db, int objects) {
    std::vector<std::wstring> handles;
    AcDbBlockTableRecord* model = nullptr;
    if (acdbOpenObject(model, db.modelSpaceId(), AcDb::kForWrite) != Acad::eOk) return handles;
    for (int i = 0; i < objects; ++i) {
        double x = (i % 500) * 20.0, y = (i / 500) * 20.0;
        AcDbEntity* entity = nullptr;
        if (i % 2 == 0) {
            auto* room = new AcDbPolyline;
            int corners = 4 + (i / 2) % 3;
            for (int k = 0; k < corners; ++k) {
                double angle = 6.283185307179586 * k / corners;
                double radius = 5.0 + (i % 7);
                room->addVertexAt(static_cast<unsigned>(k), AcGePoint2d(x + radius * std::cos(angle), y + radius * std::sin(angle)),
                                  k == 0 && i % 3 == 0 ? 0.3 : 0.0);
            }
            room->setClosed(true);
            entity = room;
        } else {
            entity = new AcDbCircle(AcGePoint3d(x, y, 0), AcGeVector3d::kZAxis, 1.0 + (i % 11) * 0.25);
        }
        AcDbObjectId id;
        if (model->appendAcDbEntity(id, entity) != Acad::eOk) {
            delete entity;
            continue;
        }
        entity->close();
        handles.push_back(HandleText(id));
    }
    model->close();
    return handles;
}

// Works the dialogs that the host runs modally: each run takes the next
// action.
class BenchDriver : public cadhost::ui::UiDriver {
public:
    std::deque<std::function<void(HWND)>> actions;
    void RunModal(HWND dialog) override {
        if (actions.empty()) return;
        auto act = std::move(actions.front());
        actions.pop_front();
        act(dialog);
    }
    int AnswerMessageBox(const cadhost::ui::MessageBoxRequest& request) override {
        std::cerr << "message box: " << cadhost::ToUtf8(request.text) << "\n";
        return request.defaultButton;
    }
    std::optional<std::wstring> AnswerFileDialog(const cadhost::ui::FileDialogRequest&) override { return {}; }
    int AnswerPopupMenu(const cadhost::ui::PopupMenuRequest&) override { return -1; }
};

struct Results {
    struct Line {
        std::string name;
        double wall, cpu;
    };
    std::vector<Line> lines;
    // Of the events that must stay under 16 ms: the slowest, by wall time
    // and by processor time.
    double slowestWall = 0, slowestCpu = 0;
    std::string slowestWallName, slowestCpuName;
    void Add(const std::string& name, const Stopwatch& watch, bool event) {
        double wall = watch.Wall(), cpu = watch.Cpu();
        lines.push_back({name, wall, cpu});
        if (event && wall > slowestWall) slowestWall = wall, slowestWallName = name;
        if (event && cpu > slowestCpu) slowestCpu = cpu, slowestCpuName = name;
    }
};

bool Check(const std::wstring& why, const char* what) {
    if (why.empty()) return true;
    std::cerr << what << ": " << cadhost::ToUtf8(why) << "\n";
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    // As the host program starts.
    cadhost::StartWithHugePageHeap(argv);
    if (argc < 2) {
        std::cerr << "usage: bench_MeasurePageBench FOLDER [OBJECTS] [PICKED]\n";
        return 2;
    }
    std::filesystem::path folder = argv[1];
    int objects = argc > 2 ? std::atoi(argv[2]) : 200000;
    int picked = argc > 3 ? std::atoi(argv[3]) : 100000;
    std::filesystem::create_directories(folder);
    std::ostringstream commandLine;
    cadhost::HostOptions options;
    options.settingsFolder = folder / "settings";
    options.output = &commandLine;
    cadhost::Host host(options);
    if (!host.linker().loadModule(L"Quillmark.arx", true)) {
        std::cerr << "Quillmark.arx does not load:\n" << commandLine.str();
        return 1;
    }
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();

    Stopwatch making;
    std::vector<std::wstring> handles = MakeDrawing(*db, objects);
    std::mt19937 random(20240611);
    std::shuffle(handles.begin(), handles.end(), random);
    handles.resize(std::min<size_t>(handles.size(), static_cast<size_t>(picked)));
    std::wstring error;
    if (!host.SaveDrawing(folder / "measure.dxf", error)) {
        std::cerr << cadhost::ToUtf8(error) << "\n";
        return 1;
    }
    {
        std::ofstream list(folder / "picked.txt");
        for (const std::wstring& h : handles) list << cadhost::ToUtf8(h) << "\n";
    }

    Results results;
    results.Add("make_drawing", making, false);
    BenchDriver driver;
    host.desktop().SetDriver(&driver);
    bool ok = true;
    std::wstring code;
    CAcFdUiFieldDialog dialog(db, 0, nullptr);
    driver.actions.push_back([&](HWND) {
        HWND types = ::GetDlgItem(dialog.m_hWnd, IDC_ACFD_FIELD_LIST);
        ok = ok && Check(cadhost::ui::UserChoose(types, cadhost::ui::FindEntry(types, -1, L"QM Objects Area", true)),
                         "choose the type");
        CWnd* page = dialog.GetOptionDialog();
        if (!ok || !page) {
            ok = false;
            return;
        }
        auto control = [&](int id) { return ::GetDlgItem(page->m_hWnd, id); };
        auto timed = [&](const std::string& name, bool event, const std::function<std::wstring()>& act) {
            Stopwatch watch;
            std::wstring why = act();
            results.Add(name, watch, event);
            ok = ok && Check(why, name.c_str());
        };

        host.input().Pick(handles);
        timed("select_and_refresh_value", false, [&] { return cadhost::ui::UserClick(control(kSelect)); });
        if (cadhost::ui::EntryCount(control(kObjectList)) != static_cast<int>(handles.size())) {
            std::cerr << "the list holds " << cadhost::ui::EntryCount(control(kObjectList)) << " entries\n";
            ok = false;
        }
        const wchar_t* units[] = {L"Scientific", L"Architectural", L"Engineering", L"Fractional", L"(none)",
                                  L"Current units", L"Decimal"};
        for (const wchar_t* u : units)
            timed("units " + cadhost::ToUtf8(u), true, [&] {
                return cadhost::ui::UserChoose(control(kUnitsList), cadhost::ui::FindEntry(control(kUnitsList), -1, u, true));
            });
        timed("precision", true, [&] { return cadhost::ui::UserChoose(control(kPrecision), 3); });
        int middle = cadhost::ui::EntryCount(control(kObjectList)) / 2;
        timed("choose_entry", true, [&] { return cadhost::ui::UserChoose(control(kObjectList), middle); });
        timed("remove", true, [&] { return cadhost::ui::UserClick(control(kRemove)); });

        driver.actions.push_back([&](HWND format) {
            HWND factor = ::GetDlgItem(format, kFactor), prefix = ::GetDlgItem(format, kPrefix);
            for (const wchar_t* typed : {L"0", L"0.", L"0.3", L"0.30", L"0.304", L"0.3048"})
                timed(std::string("format_key factor ") + cadhost::ToUtf8(typed), true,
                      [&] { return cadhost::ui::UserType(factor, typed); });
            for (const wchar_t* typed : {L"A", L"A="})
                timed(std::string("format_key prefix ") + cadhost::ToUtf8(typed), true,
                      [&] { return cadhost::ui::UserType(prefix, typed); });
            timed("format_ok", true, [&] { return cadhost::ui::UserClick(::GetDlgItem(format, IDOK)); });
        });
        timed("format_dialog_whole", false, [&] { return cadhost::ui::UserClick(control(kAdditionalFormat)); });

        driver.actions.push_back([&](HWND filter) {
            timed("filter_ok", false, [&] { return cadhost::ui::UserClick(::GetDlgItem(filter, IDOK)); });
        });
        cadhost::ui::UserClick(control(kFilter));
        code = dialog.GetFieldCode().str();
        std::cout << "preview=" << cadhost::ToUtf8(cadhost::ui::GetText(control(kPreview))) << "\n";
        ::SendMessageW(dialog.m_hWnd, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
    });
    dialog.DoModal();
    host.desktop().SetDriver(nullptr);
    if (!ok) return 1;

    // The field over the picked handles alone, evaluated a few times.
    std::wstring list;
    for (size_t i = 0; i < handles.size(); ++i) list += (i ? L";" : L"") + handles[i];
    std::wstring fieldCode = L"%<\\AcArea Object(<" + list + L">) \\f \"%lu2%pr4\">%";
    // The whole evaluation is the code read and the evaluation; the two
    // parts are given apart as well.
    std::vector<double> times, cpuTimes, readTimes;
    double sum = 0;
    const int runs = std::getenv("QM_BENCH_RUNS") ? std::max(1, std::atoi(std::getenv("QM_BENCH_RUNS"))) : 7;
    for (int run = 0; run < runs; ++run) {
        AcDbField field;
        Stopwatch watch;
        field.setFieldCode(fieldCode.c_str());
        readTimes.push_back(watch.Wall());
        Acad::ErrorStatus es = field.evaluate(AcDbField::kPreview, db);
        times.push_back(watch.Wall());
        cpuTimes.push_back(watch.Cpu());
        AcFdFieldValue value;
        if (es != Acad::eOk || field.getValue(value) != Acad::eOk || !value.get(sum)) {
            std::cerr << "the field does not evaluate\n";
            return 1;
        }
    }
    std::sort(times.begin(), times.end());
    std::sort(cpuTimes.begin(), cpuTimes.end());
    std::sort(readTimes.begin(), readTimes.end());

    std::printf("objects=%d\npicked=%zu\n", objects, handles.size());
    for (const auto& line : results.lines)
        std::printf("%s=%.6f\n%s_cpu=%.6f\n", line.name.c_str(), line.wall, line.name.c_str(), line.cpu);
    std::printf("slowest_event=%s\nslowest_event_seconds=%.6f\n", results.slowestWallName.c_str(), results.slowestWall);
    std::printf("slowest_event_cpu=%s\nslowest_event_cpu_seconds=%.6f\n", results.slowestCpuName.c_str(),
                results.slowestCpu);
    std::printf("evaluate_seconds_min=%.6f\nevaluate_seconds_median=%.6f\n", times.front(), times[times.size() / 2]);
    std::printf("evaluate_cpu_seconds_median=%.6f\n", cpuTimes[cpuTimes.size() / 2]);
    std::printf("evaluate_code_read_seconds_median=%.6f\n", readTimes[readTimes.size() / 2]);
    std::printf("area_sum=%.17g\n", sum);
    std::printf("code_characters=%zu\n", code.size());
    return 0;
}
