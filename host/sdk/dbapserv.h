// Services of the host application that the drawing layer calls.
#pragma once

#include "adesk.h"

class AcDbDatabase;

class CADHOST_API AcDbHostApplicationServices {
public:
    virtual ~AcDbHostApplicationServices() = default;
    virtual AcDbDatabase* workingDatabase() const = 0;
    virtual void setWorkingDatabase(AcDbDatabase* database) = 0;
    virtual int releaseMajorVersion() const = 0;
    virtual int releaseMinorVersion() const = 0;
    // The host's version text, as its About box shows it.
    virtual const ACHAR* versionString() const = 0;
    virtual const ACHAR* product() const = 0;
    virtual const ACHAR* program() const = 0;
    virtual const ACHAR* companyName() const = 0;
};

extern "C" CADHOST_API AcDbHostApplicationServices* acdbHostApplicationServices();
