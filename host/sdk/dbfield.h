// Fields: a field code names an evaluator and gives it its arguments; the
// field keeps the code, its format, the last value and the data items that
// its evaluator stores in it.
#pragma once

#include "AcValue.h"
#include "acarray.h"
#include "dbmain.h"

class AcDbField;
typedef AcArray<AcDbField*> AcDbFieldArray;

class CADHOST_API AcDbField : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbField)

    enum State {
        kInitialized = 0x1,
        kCompiled = 0x2,
        kModified = 0x4,
        kEvaluated = 0x8,
        kHasCache = 0x10,
        kHasFormattedString = 0x20,
    };

    // When the host evaluates a field by itself.
    enum EvalOption {
        kDisable = 0,
        kOnOpen = 0x1,
        kOnSave = 0x2,
        kOnPlot = 0x4,
        kOnEtransmit = 0x8,
        kOnRegen = 0x10,
        kOnDemand = 0x20,
        kAutomatic = 0x3F,
    };

    // The moment of one evaluation.
    enum EvalContext {
        kOpen = 0x1,
        kSave = 0x2,
        kPlot = 0x4,
        kEtransmit = 0x8,
        kRegen = 0x10,
        kDemand = 0x20,
        kPreview = 0x40,
    };

    enum EvalStatus {
        kNotYetEvaluated = 0x1,
        kSuccess = 0x2,
        kEvaluatorNotFound = 0x4,
        kSyntaxError = 0x8,
        kInvalidCode = 0x10,
        kInvalidContext = 0x20,
        kOtherError = 0x40,
    };

    enum FieldCodeFlag {
        kFieldCode = 0x1,
        kEvaluatedText = 0x2,
        kEvaluatedChildren = 0x4,
        kObjectReference = 0x8,
        kAddMarkers = 0x10,
        kEscapeBackslash = 0x20,
        kStripOptions = 0x40,
        kPreserveFields = 0x80,
        kTextField = 0x100,
        kPreserveOptions = 0x200,
        kDetachChildren = 0x400,
        kForExpression = 0x800,
    };

    AcDbField();
    // A field of a code (or, as a text field, of a text that holds codes).
    explicit AcDbField(const ACHAR* fieldCode, bool textField = false);
    ~AcDbField() override;

    // The code: "%<\Evaluator arguments \f "format">%". The markers may be
    // left off; a \f option at the end goes into the format. With kTextField
    // the text may hold any number of codes, each of which becomes a child
    // field. A text that is not a code answers eInvalidInput and changes
    // nothing.
    Acad::ErrorStatus setFieldCode(const ACHAR* fieldCode, FieldCodeFlag flags = FieldCodeFlag(0),
                                   AcDbFieldArray* childFields = nullptr);
    Acad::ErrorStatus setFieldCode(const ACHAR* fieldCode, int flags, AcDbFieldArray* childFields = nullptr) {
        return setFieldCode(fieldCode, static_cast<FieldCodeFlag>(flags), childFields);
    }
    // The code under the flags: kFieldCode (the default) for the code,
    // kAddMarkers with its markers, kStripOptions without the \f option,
    // kEvaluatedText for the value text, kEvaluatedChildren with the values of
    // the children in place of their codes. childFields receives the
    // children. The text stays valid until the field next changes.
    const ACHAR* getFieldCode(FieldCodeFlag flags, AcDbFieldArray* childFields = nullptr,
                              AcDb::OpenMode mode = AcDb::kForRead) const;
    const ACHAR* getFieldCode(int flags, AcDbFieldArray* childFields = nullptr,
                              AcDb::OpenMode mode = AcDb::kForRead) const {
        return getFieldCode(static_cast<FieldCodeFlag>(flags), childFields, mode);
    }
    // A copy that the caller frees with acutDelBuffer.
    Acad::ErrorStatus getFieldCode(ACHAR*& fieldCode, FieldCodeFlag flags, AcDbFieldArray* childFields = nullptr,
                                   AcDb::OpenMode mode = AcDb::kForRead) const;

    // The evaluator id of the code ("AcArea"); empty before a code is set.
    const ACHAR* evaluatorId() const;
    Acad::ErrorStatus setEvaluatorId(const ACHAR* evaluatorId);
    // A field whose text holds other fields (evaluator "_text").
    bool isTextField() const;

    // The text of the \f option, without its quotes.
    const ACHAR* getFormat() const;
    Acad::ErrorStatus getFormat(ACHAR*& format) const;
    Acad::ErrorStatus setFormat(const ACHAR* format);

    // Evaluates through the evaluator of the field's id (and its children
    // first). A context outside the field's evaluation option leaves the
    // field alone, except kPreview, which always evaluates. Answers eOk when
    // the field evaluated or was left alone, an error when it failed; the
    // reason is in evaluationStatus().
    Acad::ErrorStatus evaluate(int context, AcDbDatabase* database = nullptr, int* numFound = nullptr,
                               int* numEvaluated = nullptr);
    // The status of the last evaluation; the message is a new text that the
    // caller frees with acutDelBuffer.
    EvalStatus evaluationStatus(int* errorCode = nullptr, ACHAR** errorMessage = nullptr) const;
    EvalOption evaluationOption() const;
    Acad::ErrorStatus setEvaluationOption(EvalOption option);
    Acad::ErrorStatus setEvaluationOption(int option) { return setEvaluationOption(static_cast<EvalOption>(option)); }
    State state() const;

    // The value of the last successful evaluation.
    Acad::ErrorStatus getValue(AcFdFieldValue& value) const;
    // The value as shown: formatted under the field's format, "####" when
    // the field has not evaluated successfully. Valid until the field changes.
    const ACHAR* getValue() const;
    Acad::ErrorStatus getValue(ACHAR*& value) const;  // a copy, freed with acutDelBuffer

    // Named data items that an evaluator keeps in the field. getData answers
    // eOk when the item exists; setData with a null value removes it.
    Acad::ErrorStatus getData(const ACHAR* key, AcFdFieldValue* data) const;
    Acad::ErrorStatus setData(const ACHAR* key, const AcFdFieldValue* data, bool recursive = false);
    int dataCount() const;
    // The key of an item, in the order in which items were first set.
    const ACHAR* dataKey(int index) const;

    // Children: the fields inside this field's code, in the order of their
    // places (\_FldIdx 0, 1, ...).
    int childCount() const;
    // The child at index; a child that the field holds itself comes back
    // open, a child in the database is opened in the mode. Close it either way.
    Acad::ErrorStatus getChild(int index, AcDbField*& field, AcDb::OpenMode mode);

    // Files the field in the object's extension dictionary, in the
    // dictionary "ACAD_FIELD" under the name, with its children. The object
    // must be in a database and open for write; the database owns the field
    // afterwards, and the field is open for write until closed.
    Acad::ErrorStatus setInObject(AcDbObject* object, const ACHAR* propertyName);
    // Adds the field and its children to a database, which owns them then;
    // the field is open for write until closed.
    Acad::ErrorStatus postInDatabase(AcDbDatabase* database);

    // Used by the host's evaluation machinery.
    struct Impl;
    Impl& impl() const { return *m_impl; }

private:
    Impl* m_impl;
};
