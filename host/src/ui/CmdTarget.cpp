// Command targets: the walk through a class's message map and its bases'
// for the handler of a command, and the call with the handler's signature.
#include <afxwin.h>

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

namespace {

// A map chain longer than this is a fault of the maps, not a class tree.
constexpr int kMaxMapDepth = 256;

}  // namespace

const AFX_MSGMAP* CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, AfxSig_end, nullptr}};
    static const AFX_MSGMAP map = {nullptr, &entries[0]};
    return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const { return GetThisMessageMap(); }

BOOL CCmdTarget::OnCmdMsg(UINT nID, int nCode, void* pExtra, void* pHandlerInfo) {
    int depth = 0;
    for (const AFX_MSGMAP* map = GetMessageMap(); map && depth < kMaxMapDepth;
         map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr, ++depth) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry && entry->nSig != AfxSig_end; ++entry) {
            if (entry->nMessage != WM_COMMAND || entry->nCode != static_cast<UINT>(nCode) || nID < entry->nID ||
                nID > entry->nLastID || !entry->pfn)
                continue;
            if (pHandlerInfo) return TRUE;  // asked only whether there is a handler
            switch (entry->nSig) {
            case AfxSigCmd_v:
                (this->*entry->pfn)();
                return TRUE;
            case AfxSigCmd_b:
                return (this->*AfxMsgHandlerAs<BOOL (CCmdTarget::*)()>(entry->pfn))();
            case AfxSigCmd_RANGE:
                (this->*AfxMsgHandlerAs<void (CCmdTarget::*)(UINT)>(entry->pfn))(nID);
                return TRUE;
            case AfxSigCmd_EX:
                return (this->*AfxMsgHandlerAs<BOOL (CCmdTarget::*)(UINT)>(entry->pfn))(nID);
            case AfxSigCmdUI:
                if (!pExtra) return FALSE;
                (this->*AfxMsgHandlerAs<void (CCmdTarget::*)(CCmdUI*)>(entry->pfn))(static_cast<CCmdUI*>(pExtra));
                return TRUE;
            default:
                return FALSE;
            }
        }
    }
    return FALSE;
}
