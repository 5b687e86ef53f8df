// The document manager: the open drawings, reactors on their life, and the
// stack of resource handles through which templates and strings are found.
#pragma once

#include "rxobject.h"

class AcDbDatabase;
class AcApDocument;

class CADHOST_API AcApDocManagerReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManagerReactor)
    virtual void documentCreated(AcApDocument* document) {}
    virtual void documentToBeDestroyed(AcApDocument* document) {}
    virtual void documentBecameCurrent(AcApDocument* document) {}
};

class CADHOST_API AcApDocument : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocument)
    virtual AcDbDatabase* database() const = 0;
    // The full path of the drawing's file; empty while it was never saved.
    virtual const ACHAR* fileName() const = 0;
    virtual const ACHAR* docTitle() const = 0;
};

class CADHOST_API AcApDocManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManager)
    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual int documentCount() const = 0;
    virtual void addReactor(AcApDocManagerReactor* reactor) = 0;
    virtual void removeReactor(AcApDocManagerReactor* reactor) = 0;
    virtual void pushResourceHandle(HINSTANCE resourceHandle) = 0;
    virtual void pushAcadResourceHandle() = 0;
    virtual void popResourceHandle() = 0;
};

// The manager, or null once the host has shut it down.
extern "C" CADHOST_API AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()
