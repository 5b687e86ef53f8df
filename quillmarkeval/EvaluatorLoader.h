// The module's way to its evaluators: one loader, registered with the
// host's field engine while the module is loaded, that answers the six
// evaluator ids of the module's field codes.
#pragma once

#include "StdAfx.h"

class AsdkTableCellEvaluator;
class AsdkBlockCountEvaluator;
class AsdkAreaEvaluator;
class AsdkLengthEvaluator;
class AsdkTextFileEvaluator;
class AsdkExcelCellEvaluator;
class AsdkEvaluationPassReactor;

class AsdkQuillmarkEvaluatorLoader : public AcFdFieldEvaluatorLoader {
public:
    AsdkQuillmarkEvaluatorLoader();
    ~AsdkQuillmarkEvaluatorLoader() override;

    // The evaluator of an id, compared without regard to case. An id of the
    // module whose evaluator this version does not hold yet answers null,
    // so that its fields fail with "evaluator not found" and another
    // module's evaluator may serve it.
    AcFdFieldEvaluator* getEvaluator(const ACHAR* evaluatorId) override;

    // The reactor that tells the evaluators of each evaluation pass.
    AsdkEvaluationPassReactor* PassReactor() { return m_passReactor; }
    AsdkExcelCellEvaluator* ExcelCell() { return m_excelCell; }

private:
    AsdkTableCellEvaluator* m_tableCell;
    AsdkBlockCountEvaluator* m_blockCount;
    AsdkAreaEvaluator* m_area;
    AsdkLengthEvaluator* m_length;
    AsdkTextFileEvaluator* m_textFile;
    AsdkExcelCellEvaluator* m_excelCell;
    AsdkEvaluationPassReactor* m_passReactor;
};

// The six ids in the order of the Field dialog hook's list, and whether
// this version evaluates each.
struct QuillmarkEvaluatorSlot {
    const ACHAR* id;
    bool built;
};
int GetQuillmarkEvaluatorSlots(const QuillmarkEvaluatorSlot*& slots);

// Registers the loader and its pass reactor with the field engine; answers
// 1 on success, 0 when there is no engine or the engine refuses.
int RegisterQuillmarkEvaluators();
// Withdraws and deletes the loader and its reactor; answers 1 when the
// loader was registered.
int UnregisterQuillmarkEvaluators();
