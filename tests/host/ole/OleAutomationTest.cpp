// OLE Automation of the platform: InvokeHelper's arguments, results and
// exceptions against an object that records what reaches it, the
// drivers' references, variants, texts, the system's messages and what the
// exceptions stand for.
#include <gtest/gtest.h>

#include <afxdisp.h>
#include <comdef.h>

#include <functional>
#include <string>
#include <vector>

namespace {

// An object that records its calls and answers as a test tells it.
class RecordingObject : public IDispatch {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** object) override {
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
            *object = static_cast<IDispatch*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--references); }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT*) override {
        lastId = id;
        lastFlags = flags;
        arguments.clear();
        for (UINT i = 0; i < parameters->cArgs; ++i) {
            VARIANT copy;
            VariantInit(&copy);
            VariantCopy(&copy, &parameters->rgvarg[i]);
            arguments.push_back(copy);
        }
        named.assign(parameters->rgdispidNamedArgs, parameters->rgdispidNamedArgs + parameters->cNamedArgs);
        wantedResult = result != nullptr;
        return answer ? answer(result, exception) : S_OK;
    }
    ~RecordingObject() {
        for (VARIANT& v : arguments) VariantClear(&v);
    }

    int references = 1;
    DISPID lastId = 0;
    WORD lastFlags = 0;
    std::vector<VARIANT> arguments;  // as they reached the object: last one first
    std::vector<DISPID> named;
    bool wantedResult = false;
    std::function<HRESULT(VARIANT*, EXCEPINFO*)> answer;
};

}  // namespace

TEST(OleAutomationTest, InvokeHelperPassesArgumentsLastFirstAndFreesItsOwnTexts) {
    RecordingObject object;
    COleDispatchDriver driver(&object, FALSE);
    COleVariant index(static_cast<LONG>(7));
    static const BYTE types[] = VTS_BSTR VTS_I4 VTS_BOOL VTS_VARIANT;
    driver.InvokeHelper(0x2AA, DISPATCH_METHOD, VT_EMPTY, nullptr, types, L"book.xls", static_cast<LONG>(-3), TRUE,
                        static_cast<VARIANT*>(&index));
    EXPECT_EQ(object.lastId, 0x2AA);
    EXPECT_EQ(object.lastFlags, DISPATCH_METHOD);
    EXPECT_FALSE(object.wantedResult);
    ASSERT_EQ(object.arguments.size(), 4u);
    EXPECT_EQ(object.arguments[3].vt, VT_BSTR);
    EXPECT_STREQ(object.arguments[3].bstrVal, L"book.xls");
    EXPECT_EQ(SysStringLen(object.arguments[3].bstrVal), 8u);
    EXPECT_EQ(object.arguments[2].vt, VT_I4);
    EXPECT_EQ(object.arguments[2].lVal, -3);
    EXPECT_EQ(object.arguments[1].vt, VT_BOOL);
    EXPECT_EQ(object.arguments[1].boolVal, VARIANT_TRUE);
    EXPECT_EQ(object.arguments[0].vt, VT_I4);
    EXPECT_EQ(object.arguments[0].lVal, 7);
    EXPECT_TRUE(object.named.empty());
    EXPECT_EQ(index.vt, VT_I4);  // the caller's variant stays the caller's
}

TEST(OleAutomationTest, APropertyPutNamesItsValue) {
    RecordingObject object;
    COleDispatchDriver driver(&object, FALSE);
    static const BYTE types[] = VTS_BOOL;
    driver.InvokeHelper(0x22E, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, types, TRUE);
    ASSERT_EQ(object.named.size(), 1u);
    EXPECT_EQ(object.named[0], DISPID_PROPERTYPUT);
    EXPECT_EQ(object.arguments.size(), 1u);
}

TEST(OleAutomationTest, ResultsLandInTheirTypesAndConvert) {
    RecordingObject object;
    COleDispatchDriver driver(&object, FALSE);
    object.answer = [](VARIANT* result, EXCEPINFO*) {
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(L"42");
        return S_OK;
    };
    CString text;
    driver.InvokeHelper(0x6E, DISPATCH_PROPERTYGET, VT_BSTR, &text, nullptr);
    EXPECT_EQ(text, L"42");
    LONG number = 0;
    driver.InvokeHelper(0x76, DISPATCH_PROPERTYGET, VT_I4, &number, nullptr);
    EXPECT_EQ(number, 42);
    object.answer = [](VARIANT* result, EXCEPINFO*) {
        result->vt = VT_I4;
        result->lVal = 0;
        return S_OK;
    };
    BOOL flag = TRUE;
    driver.InvokeHelper(0x22E, DISPATCH_PROPERTYGET, VT_BOOL, &flag, nullptr);
    EXPECT_FALSE(flag);
    RecordingObject other;
    object.answer = [&](VARIANT* result, EXCEPINFO*) {
        other.AddRef();
        result->vt = VT_DISPATCH;
        result->pdispVal = &other;
        return S_OK;
    };
    LPDISPATCH dispatch = nullptr;
    driver.InvokeHelper(0x134, DISPATCH_PROPERTYGET, VT_DISPATCH, &dispatch, nullptr);
    EXPECT_EQ(dispatch, &other);
    EXPECT_EQ(other.references, 2);  // the caller's reference
    COleDispatchDriver held(dispatch);
    held.ReleaseDispatch();
    EXPECT_EQ(other.references, 1);
    object.answer = [](VARIANT* result, EXCEPINFO*) {
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(L"not a number");
        return S_OK;
    };
    try {
        driver.InvokeHelper(0x76, DISPATCH_PROPERTYGET, VT_I4, &number, nullptr);
        ADD_FAILURE() << "a text that is no number became one";
    } catch (COleException* e) {
        EXPECT_EQ(e->m_sc, DISP_E_TYPEMISMATCH);
        e->Delete();
    }
}

TEST(OleAutomationTest, FailuresRaiseTheirExceptions) {
    RecordingObject object;
    COleDispatchDriver driver(&object, FALSE);
    object.answer = [](VARIANT*, EXCEPINFO* exception) {
        exception->bstrDescription = SysAllocString(L"The file is not there.");
        exception->bstrSource = SysAllocString(L"Excel");
        exception->scode = static_cast<SCODE>(0x800A03ECu);
        return DISP_E_EXCEPTION;
    };
    try {
        driver.InvokeHelper(0x2AA, DISPATCH_METHOD, VT_DISPATCH, nullptr, nullptr);
        ADD_FAILURE() << "no exception";
    } catch (COleDispatchException* e) {
        EXPECT_EQ(e->m_strDescription, L"The file is not there.");
        EXPECT_EQ(e->m_strSource, L"Excel");
        EXPECT_EQ(e->m_scError, static_cast<SCODE>(0x800A03ECu));
        wchar_t text[64];
        EXPECT_TRUE(e->GetErrorMessage(text, 64));
        EXPECT_STREQ(text, L"The file is not there.");
        EXPECT_EQ(COleException::Process(e), E_UNEXPECTED);
        e->Delete();
    }
    object.answer = [](VARIANT*, EXCEPINFO*) { return RPC_E_CALL_REJECTED; };
    try {
        driver.InvokeHelper(0x22E, DISPATCH_PROPERTYGET, VT_BOOL, nullptr, nullptr);
        ADD_FAILURE() << "no exception";
    } catch (COleException* e) {
        EXPECT_EQ(e->m_sc, RPC_E_CALL_REJECTED);
        EXPECT_EQ(COleException::Process(e), RPC_E_CALL_REJECTED);
        wchar_t text[64];
        EXPECT_TRUE(e->GetErrorMessage(text, 64));
        EXPECT_STREQ(text, L"Call was rejected by callee.\r\n");
        e->Delete();
    }
}

TEST(OleAutomationTest, WithoutAPointerInvokeHelperDoesNothing) {
    COleDispatchDriver driver;
    LONG number = 17;
    driver.InvokeHelper(0x76, DISPATCH_PROPERTYGET, VT_I4, &number, nullptr);
    EXPECT_EQ(number, 17);
}

TEST(OleAutomationTest, DriversTakeAndEndTheirReferences) {
    RecordingObject a, b;
    {
        COleDispatchDriver driver;
        a.AddRef();
        driver.AttachDispatch(&a);
        EXPECT_EQ(a.references, 2);
        b.AddRef();
        driver.AttachDispatch(&b);  // a's reference ends
        EXPECT_EQ(a.references, 1);
        COleDispatchDriver copy(driver);
        EXPECT_EQ(b.references, 3);
        LPDISPATCH out = copy.DetachDispatch();  // handed out, not ended
        EXPECT_EQ(out, &b);
        EXPECT_EQ(b.references, 3);
        out->Release();
        COleDispatchDriver borrowed(&a, FALSE);
        borrowed.ReleaseDispatch();  // not its reference to end
        EXPECT_EQ(a.references, 1);
        EXPECT_EQ(borrowed.m_lpDispatch, nullptr);
    }
    EXPECT_EQ(b.references, 1);  // the driver's end ended its reference
}

TEST(OleAutomationTest, CreateDispatchOfAClassThatIsNotThereSaysWhy) {
    COleDispatchDriver driver;
    COleException error;
    EXPECT_FALSE(driver.CreateDispatch(L"No.Such.Program", &error));
    EXPECT_EQ(error.m_sc, CO_E_CLASSSTRING);
    EXPECT_EQ(driver.m_lpDispatch, nullptr);
    CLSID clsid;
    EXPECT_EQ(CLSIDFromProgID(L"No.Such.Program", &clsid), CO_E_CLASSSTRING);
    IUnknown* unknown = reinterpret_cast<IUnknown*>(1);
    EXPECT_EQ(GetActiveObject(CLSID_NULL, nullptr, &unknown), MK_E_UNAVAILABLE);
    EXPECT_EQ(unknown, nullptr);
}

TEST(OleAutomationTest, ExceptionsStandForTheirStatusCodes) {
    COleException ole;
    ole.m_sc = static_cast<SCODE>(0x80010001u);
    CMemoryException memory;
    CNotSupportedException notSupported;
    COleDispatchException dispatch(L"x", 0, 0);
    CUserException user;
    struct Case {
        const CException* exception;
        SCODE code;
    };
    const Case cases[] = {{&ole, static_cast<SCODE>(0x80010001u)}, {&memory, E_OUTOFMEMORY},
                          {&notSupported, E_NOTIMPL},           {&dispatch, E_UNEXPECTED},
                          {&user, E_UNEXPECTED}};
    for (const Case& c : cases) EXPECT_EQ(COleException::Process(c.exception), c.code);
}

TEST(OleAutomationTest, TheSystemsTextsAndComErrorMessages) {
    struct Case {
        DWORD code;
        const wchar_t* system;  // FormatMessageW's text, null when it has none
        const wchar_t* shown;   // _com_error::ErrorMessage
    };
    const Case cases[] = {
        {0x80010001, L"Call was rejected by callee.\r\n", L"Call was rejected by callee."},
        {0x8000FFFF, L"Catastrophic failure\r\n", L"Catastrophic failure"},
        {0x800401F3, L"Invalid class string\r\n", L"Invalid class string"},
        {0x8007000E, L"Not enough memory resources are available to complete this operation.\r\n",
         L"Not enough memory resources are available to complete this operation."},
        {0x80070002, L"The system cannot find the file specified.\r\n", L"The system cannot find the file specified."},
        {0x80040201, nullptr, L"IDispatch error #1"},
        {0x8004FFFF, nullptr, L"IDispatch error #65023"},
        {0x80040200, nullptr, L"Unknown error 0x80040200"},
        {0x800A03EC, nullptr, L"Unknown error 0x800A03EC"},
        {0x1234, nullptr, L"Unknown error 0x1234"},
    };
    for (const Case& c : cases) {
        LPWSTR text = nullptr;
        DWORD length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                          FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, c.code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                      reinterpret_cast<LPWSTR>(&text), 0, nullptr);
        if (c.system) {
            ASSERT_NE(text, nullptr) << std::hex << c.code;
            EXPECT_STREQ(text, c.system);
            EXPECT_EQ(length, std::wcslen(c.system));
        } else {
            EXPECT_EQ(text, nullptr) << std::hex << c.code;
            EXPECT_EQ(length, 0u);
            EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MR_MID_NOT_FOUND));
        }
        EXPECT_EQ(LocalFree(text), nullptr);
        _com_error error(static_cast<HRESULT>(c.code));
        EXPECT_STREQ(error.ErrorMessage(), c.shown) << std::hex << c.code;
        _com_error copy = error;
        EXPECT_STREQ(copy.ErrorMessage(), c.shown);
    }
    wchar_t small[8];
    EXPECT_EQ(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0x80010001, 0, small, 8, nullptr), 0u);
}

TEST(OleAutomationTest, VariantsConvertAsThePlatformConvertsThem) {
    struct Case {
        VARIANT from;
        VARTYPE to;
        HRESULT hr;
        double number;  // the value converted, read as a number
    };
    auto make = [](VARTYPE vt, double value) {
        VARIANT v;
        VariantInit(&v);
        v.vt = vt;
        if (vt == VT_I4) v.lVal = static_cast<LONG>(value);
        else if (vt == VT_R8) v.dblVal = value;
        else if (vt == VT_BOOL) v.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
        else if (vt == VT_I2) v.iVal = static_cast<SHORT>(value);
        return v;
    };
    const Case cases[] = {
        {make(VT_R8, 2.5), VT_I4, S_OK, 2},   {make(VT_R8, 3.5), VT_I4, S_OK, 4},
        {make(VT_R8, 3e10), VT_I4, DISP_E_OVERFLOW, 0}, {make(VT_I4, 70000), VT_I2, DISP_E_OVERFLOW, 0},
        {make(VT_BOOL, 1), VT_I4, S_OK, -1},  {make(VT_I4, 5), VT_BOOL, S_OK, -1},
        {make(VT_I4, 0), VT_BOOL, S_OK, 0},   {make(VT_EMPTY, 0), VT_I4, S_OK, 0},
        {make(VT_I2, -7), VT_R8, S_OK, -7},
    };
    for (const Case& c : cases) {
        VARIANT out;
        VariantInit(&out);
        EXPECT_EQ(VariantChangeType(&out, &c.from, 0, c.to), c.hr);
        if (c.hr != S_OK) continue;
        double number = c.to == VT_I4 ? out.lVal : c.to == VT_BOOL ? out.boolVal : c.to == VT_R8 ? out.dblVal : out.iVal;
        EXPECT_EQ(number, c.number);
    }
    COleVariant text(L" 12 ");
    text.ChangeType(VT_I4);
    EXPECT_EQ(text.vt, VT_I4);
    EXPECT_EQ(text.lVal, 12);
    COleVariant words(L"twelve");
    EXPECT_THROW(
        {
            try {
                words.ChangeType(VT_I4);
            } catch (COleException* e) {
                e->Delete();
                throw 1;
            }
        },
        int);
    COleVariant missing(static_cast<LONG>(DISP_E_PARAMNOTFOUND), VT_ERROR);
    EXPECT_EQ(missing.vt, VT_ERROR);
    EXPECT_EQ(missing.scode, DISP_E_PARAMNOTFOUND);
    COleVariant number(3.25);
    number.ChangeType(VT_BSTR);
    EXPECT_STREQ(number.bstrVal, L"3.25");
}

TEST(OleAutomationTest, SplitPathCutsDriveFolderNameAndExtension) {
    struct Case {
        const wchar_t *path, *drive, *dir, *name, *ext;
    };
    const Case cases[] = {
        {L"C:\\data\\book.xls", L"C:", L"\\data\\", L"book", L".xls"},
        {L"/home/me/book.tar.xlsx", L"", L"/home/me/", L"book.tar", L".xlsx"},
        {L"Book1", L"", L"", L"Book1", L""},
        {L"./notes", L"", L"./", L"notes", L""},
        {L"/folder.d/name", L"", L"/folder.d/", L"name", L""},
        {L"", L"", L"", L"", L""},
    };
    for (const Case& c : cases) {
        wchar_t drive[_MAX_DRIVE], dir[_MAX_DIR], name[_MAX_FNAME], ext[_MAX_EXT];
        _wsplitpath(c.path, drive, dir, name, ext);
        EXPECT_STREQ(drive, c.drive) << c.path;
        EXPECT_STREQ(dir, c.dir) << c.path;
        EXPECT_STREQ(name, c.name) << c.path;
        EXPECT_STREQ(ext, c.ext) << c.path;
    }
    std::wstring longName(400, L'n');
    wchar_t name[_MAX_FNAME];
    _wsplitpath((L"/x/" + longName + L".xls").c_str(), nullptr, nullptr, name, nullptr);
    EXPECT_EQ(std::wcslen(name), static_cast<size_t>(_MAX_FNAME - 1));
}
