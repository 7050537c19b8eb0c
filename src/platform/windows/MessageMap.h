#pragma once

#include "platform/windows/Messages.h"

#include <span>
#include <type_traits>

class CWnd;

// One line of a message map: which message it is for and which member function handles it. For WM_COMMAND and
// WM_NOTIFY the notification code and the range of ids count as well.
struct CMessageEntry {
    UINT nMessage;
    UINT nCode;
    int nIdFirst;
    int nIdLast;
    LRESULT (*pfnHandle)(CWnd& wnd, WPARAM wParam, LPARAM lParam);
};

// The message map of a class, chained to that of its base. The first line that fits wins.
//
//     const CMessageMap& CTunerWnd::GetMessageMap() const {
//         static constexpr std::array entries{
//             MapMessage<&CTunerWnd::OnPaint>(WM_PAINT),
//             MapCommand<&CTunerWnd::OnPlay>(10000),
//             MapNotification<&CTunerWnd::OnSelChange>(LBN_SELCHANGE, 10008),
//             MapCommandRange<&CTunerWnd::OnNoteCommand>(10100, 10311)};
//         static const CMessageMap map{entries, &CWnd::GetMessageMap()};
//         return map;
//     }
struct CMessageMap {
    std::span<const CMessageEntry> entries;
    const CMessageMap* pBase;
};

// How a handler's parameters are read off a message. What a handler may look like:
// clang-format off
//     R f()                any message
//     R f(UINT)            wParam: a timer's id, a character, a virtual-key code
//     R f(POINT)           lParam as a point: WM_MOVE (the client area's origin), WM_NCHITTEST (screen)
//     R f(UINT, POINT)     wParam, and lParam as a point: mouse messages (flags, client coordinates)
//     R f(CWnd*, POINT)    WM_CONTEXTMENU: the window clicked in, screen coordinates
//     R f(WPARAM, LPARAM)  any message
// clang-format on
// R is void (the result is then 0) or anything that turns into LRESULT.
template <class Handler>
struct CHandlerCall;

template <class Class, class Result, class... Args>
struct CHandlerCall<Result (Class::*)(Args...)> {
    template <auto pHandler>
    static LRESULT Call(CWnd& wnd, WPARAM wParam, LPARAM lParam) {
        if constexpr (std::is_void_v<Result>) {
            Invoke<pHandler>(static_cast<Class&>(wnd), wParam, lParam,
                             static_cast<void (*)(Args...)>(nullptr));
            return 0;
        } else {
            return static_cast<LRESULT>(Invoke<pHandler>(static_cast<Class&>(wnd), wParam, lParam,
                                                         static_cast<void (*)(Args...)>(nullptr)));
        }
    }
    template <auto pHandler>
    static LRESULT CallWithId(CWnd& wnd, WPARAM wParam, LPARAM /*lParam*/) {
        (static_cast<Class&>(wnd).*pHandler)(IdOfCommand(wParam));
        return 0;
    }

private:
    template <auto pHandler>
    static Result Invoke(Class& object, WPARAM /*wParam*/, LPARAM /*lParam*/, void (*)()) {
        return (object.*pHandler)();
    }
    template <auto pHandler>
    static Result Invoke(Class& object, WPARAM wParam, LPARAM /*lParam*/, void (*)(UINT)) {
        return (object.*pHandler)(static_cast<UINT>(wParam));
    }
    template <auto pHandler>
    static Result Invoke(Class& object, WPARAM /*wParam*/, LPARAM lParam, void (*)(POINT)) {
        return (object.*pHandler)(PointOfParam(lParam));
    }
    template <auto pHandler>
    static Result Invoke(Class& object, WPARAM wParam, LPARAM lParam, void (*)(UINT, POINT)) {
        return (object.*pHandler)(static_cast<UINT>(wParam), PointOfParam(lParam));
    }
    template <auto pHandler>
    static Result Invoke(Class& object, WPARAM wParam, LPARAM lParam, void (*)(CWnd*, POINT)) {
        // A window travels as a number in wParam, as handles do.
        // NOLINTNEXTLINE(performance-no-int-to-ptr)
        return (object.*pHandler)(reinterpret_cast<CWnd*>(wParam), PointOfParam(lParam));
    }
    template <auto pHandler>
    static Result Invoke(Class& object, WPARAM wParam, LPARAM lParam, void (*)(WPARAM, LPARAM)) {
        return (object.*pHandler)(wParam, lParam);
    }
};

// A line for any message but WM_COMMAND and WM_NOTIFY.
template <auto pHandler>
constexpr CMessageEntry MapMessage(UINT nMessage) {
    return {nMessage, 0, 0, 0, &CHandlerCall<decltype(pHandler)>::template Call<pHandler>};
}

// A line for one notification code of one control: `void f()`.
template <auto pHandler>
constexpr CMessageEntry MapNotification(UINT nCode, int nId) {
    return {WM_COMMAND, nCode, nId, nId, &CHandlerCall<decltype(pHandler)>::template Call<pHandler>};
}

// A line for one code of WM_NOTIFY of one control: `void f()`.
template <auto pHandler>
constexpr CMessageEntry MapNotify(UINT nCode, int nId) {
    return {WM_NOTIFY, nCode, nId, nId, &CHandlerCall<decltype(pHandler)>::template Call<pHandler>};
}

// A line for a command, from a button or a menu: `void f()`.
template <auto pHandler>
constexpr CMessageEntry MapCommand(int nId) {
    return MapNotification<pHandler>(BN_CLICKED, nId);
}

// A line for a run of commands, both ends included: `void f(int nId)`.
template <auto pHandler>
constexpr CMessageEntry MapCommandRange(int nIdFirst, int nIdLast) {
    return {WM_COMMAND, BN_CLICKED, nIdFirst, nIdLast,
            &CHandlerCall<decltype(pHandler)>::template CallWithId<pHandler>};
}
