// The evaluators of AcArea and AcLength codes: the value is the sum of the
// areas, or of the lengths, of the objects that the code lists by handle.
#pragma once

#include "StdAfx.h"

#include "CurveMeasures.h"

// What one of the two evaluators measures, and how it names it.
struct ObjectsMeasure {
    const ACHAR* evaluatorId;  // "AcArea"
    const ACHAR* dataKey;      // "AcArea Data"
    const ACHAR* kinds;        // "a circle or a polyline", in messages
    const ACHAR* quantity;     // "the areas of circles and polylines", in messages
    MeasureResult (*measure)(const AcDbObject* object, double& value);
};

extern const ObjectsMeasure kAreaMeasure;
extern const ObjectsMeasure kLengthMeasure;

// The two evaluators share their work; each is made with its measure.
//
// On success the value is a double, the sum over the listed objects in
// the order of the code (an empty list sums to 0), and the data item under
// the measure's key holds the list as "Object(<h1;h2>)", the handles as
// the code wrote them. A code it cannot read is a syntax error; a handle
// that names no object, an erased object, or an object of a kind it does
// not measure fails the whole evaluation with a message that names the
// handle. A failed evaluation writes no data item.
class AsdkObjectsEvaluator : public AcFdFieldEvaluator {
public:
    explicit AsdkObjectsEvaluator(const ObjectsMeasure& measure);
    ~AsdkObjectsEvaluator() override;

    const ACHAR* evaluatorId() const override;
    Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase* database,
                               AcFdFieldResult* result) override;

private:
    const ObjectsMeasure& m_measure;
};

class AsdkAreaEvaluator : public AsdkObjectsEvaluator {
public:
    AsdkAreaEvaluator() : AsdkObjectsEvaluator(kAreaMeasure) {}
};

class AsdkLengthEvaluator : public AsdkObjectsEvaluator {
public:
    AsdkLengthEvaluator() : AsdkObjectsEvaluator(kLengthMeasure) {}
};

// Sums the measure over the objects of an object list text (of length
// characters) in a database. Answers a status of AcDbField: kSuccess with
// sum and data (the data item's text) filled, or kSyntaxError or
// kInvalidCode with why. When keptData (may be null) is the data item's
// text already, data is left empty and dataKept set: a field evaluated
// again over the same list keeps its item as it is.
int SumObjectList(const ObjectsMeasure& measure, const ACHAR* listText, int length, AcDbDatabase* database,
                  double& sum, CString& data, CString& why, const ACHAR* keptData = nullptr,
                  bool* dataKept = nullptr);
