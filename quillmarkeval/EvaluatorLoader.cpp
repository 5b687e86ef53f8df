#include "EvaluatorLoader.h"

#include <tchar.h>

#include "BlockCountEvaluator.h"
#include "EvaluationPass.h"
#include "EvaluatorIds.h"
#include "ExcelCellEvaluator.h"
#include "ObjectsEvaluator.h"
#include "TableCellEvaluator.h"
#include "TextFileEvaluator.h"

namespace {

const QuillmarkEvaluatorSlot kSlots[] = {
    {QM_EVAL_AREA, true},      {QM_EVAL_LENGTH, true},     {QM_EVAL_BLOCK_COUNT, true},
    {QM_EVAL_TEXT_FILE, true}, {QM_EVAL_EXCEL_CELL, true}, {QM_EVAL_TABLE_CELL, true},
};

AsdkQuillmarkEvaluatorLoader* g_loader = nullptr;

}  // namespace

int GetQuillmarkEvaluatorSlots(const QuillmarkEvaluatorSlot*& slots) {
    slots = kSlots;
    return static_cast<int>(sizeof(kSlots) / sizeof(kSlots[0]));
}

AsdkQuillmarkEvaluatorLoader::AsdkQuillmarkEvaluatorLoader()
    : m_tableCell(new AsdkTableCellEvaluator),
      m_blockCount(new AsdkBlockCountEvaluator),
      m_area(new AsdkAreaEvaluator),
      m_length(new AsdkLengthEvaluator),
      m_textFile(new AsdkTextFileEvaluator),
      m_excelCell(new AsdkExcelCellEvaluator),
      m_passReactor(new AsdkEvaluationPassReactor) {
    m_passReactor->AddCache(&m_textFile->Files());
    m_passReactor->AddCache(&m_excelCell->Workbooks());
}

AsdkQuillmarkEvaluatorLoader::~AsdkQuillmarkEvaluatorLoader() {
    delete m_passReactor;
    delete m_excelCell;
    delete m_textFile;
    delete m_blockCount;
    delete m_length;
    delete m_area;
    delete m_tableCell;
}

AcFdFieldEvaluator* AsdkQuillmarkEvaluatorLoader::getEvaluator(const ACHAR* evaluatorId) {
    if (!evaluatorId) return nullptr;
    if (_wcsicmp(evaluatorId, QM_EVAL_TABLE_CELL) == 0) return m_tableCell;
    if (_wcsicmp(evaluatorId, QM_EVAL_BLOCK_COUNT) == 0) return m_blockCount;
    if (_wcsicmp(evaluatorId, QM_EVAL_AREA) == 0) return m_area;
    if (_wcsicmp(evaluatorId, QM_EVAL_LENGTH) == 0) return m_length;
    if (_wcsicmp(evaluatorId, QM_EVAL_TEXT_FILE) == 0) return m_textFile;
    if (_wcsicmp(evaluatorId, QM_EVAL_EXCEL_CELL) == 0) return m_excelCell;
    return nullptr;
}

int RegisterQuillmarkEvaluators() {
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    if (!engine || g_loader) return 0;
    g_loader = new AsdkQuillmarkEvaluatorLoader;
    if (engine->registerEvaluatorLoader(g_loader) != Acad::eOk) {
        delete g_loader;
        g_loader = nullptr;
        return 0;
    }
    // Without the reactor every field reads its file anew: slower, not wrong.
    acdbAddFieldReactor(g_loader->PassReactor());
    return 1;
}

int UnregisterQuillmarkEvaluators() {
    if (!g_loader) return 0;
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    acdbRemoveFieldReactor(g_loader->PassReactor());
    int withdrawn = engine && engine->unregisterEvaluatorLoader(g_loader) == Acad::eOk ? 1 : 0;
    delete g_loader;
    g_loader = nullptr;
    return withdrawn;
}
