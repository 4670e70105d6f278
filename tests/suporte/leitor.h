// A program that reads the screen aloud, in small: what a window of another process says of itself, and the events that
// it raises. The thread must have COM, and must handle messages for the events.
#pragma once

#include <windows.h>
// after windows.h
#include <oleacc.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "core/formato.h"
#include "core/utf16.h"

namespace zu::launcher::teste {

// An object of a window, or a part of one.
struct Coisa {
    std::shared_ptr<IAccessible> objeto;
    VARIANT filho{};

    Coisa(IUnknown* unico, LONG numero) {
        filho.vt = VT_I4;
        filho.lVal = numero;
        if (unico == nullptr) return;
        void* dele = nullptr;
        unico->QueryInterface(__uuidof(IAccessible), &dele);
        unico->Release();
        if (dele != nullptr) objeto.reset(static_cast<IAccessible*>(dele), [](IAccessible* o) { o->Release(); });
    }
    // Without an object when the window is gone.
    static Coisa De(HWND janela) {
        void* objeto = nullptr;
        AccessibleObjectFromWindow(janela, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible), &objeto);
        return {static_cast<IUnknown*>(objeto), CHILDID_SELF};
    }

    using Pergunta = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);
    [[nodiscard]] std::string Texto(Pergunta pergunta) const {
        BSTR texto = nullptr;
        if (!objeto || (objeto.get()->*pergunta)(filho, &texto) != S_OK) return "";
        const std::string resposta = ParaUtf8({texto, SysStringLen(texto)});
        SysFreeString(texto);
        return resposta;
    }
    [[nodiscard]] std::string Nome() const { return Texto(&IAccessible::get_accName); }

    // "ROLE NAME=VALUE; DESCRIPTION [ACTION]", in parentheses while it is disabled, with "*" when it is checked or
    // selected, with "?" when a pointer in its middle finds something else.
    [[nodiscard]] std::string Ler() const {
        VARIANT papel{};
        VARIANT estado{};
        if (!objeto) return "";
        objeto->get_accRole(filho, &papel);
        objeto->get_accState(filho, &estado);
        std::string texto = Formatar("{:x} {}", papel.lVal, Nome());
        const auto juntar = [&](std::string_view antes, const std::string& t, std::string_view depois) {
            if (!t.empty()) texto.append(antes).append(t).append(depois);
        };
        juntar("=", Texto(&IAccessible::get_accValue), "");
        juntar("; ", Texto(&IAccessible::get_accDescription), "");
        juntar(" [", Texto(&IAccessible::get_accDefaultAction), "]");
        if ((estado.lVal & (STATE_SYSTEM_CHECKED | STATE_SYSTEM_SELECTED)) != 0) texto += "*";
        if ((estado.lVal & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN)) == 0 && !NoSeuLugar()) texto += "?";
        return (estado.lVal & STATE_SYSTEM_UNAVAILABLE) != 0 ? "(" + texto + ")" : texto;
    }

    // Itself, its parts and the objects in it, each with its own, until `feito`. False when it never was.
    template <class Feito>
    bool Percorrer(Feito feito) const {
        if (!objeto || feito(*this)) return objeto != nullptr;
        long quantas = 0;
        objeto->get_accChildCount(&quantas);
        for (LONG i = 1; i <= quantas; ++i) {
            Coisa parte = *this;
            parte.filho.lVal = i;
            IDispatch* proprio = nullptr;
            const bool simples = objeto->get_accChild(parte.filho, &proprio) != S_OK;
            if (simples ? feito(parte) : Coisa(proprio, CHILDID_SELF).Percorrer(feito)) return true;
        }
        return false;
    }
    // The first in it that has this name; itself when there is none.
    [[nodiscard]] Coisa Com(const std::string& nome) const {
        Coisa achada = *this;
        Percorrer([&](const Coisa& coisa) {
            const bool esta = coisa.Nome() == nome;
            if (esta) achada = coisa;
            return esta;
        });
        return achada;
    }

 private:
    [[nodiscard]] bool NoSeuLugar() const {
        std::array<long, 4> r{};  // left, top, width, height
        HWND janela = nullptr;
        objeto->accLocation(&r[0], &r[1], &r[2], &r[3], filho);
        WindowFromAccessibleObject(objeto.get(), &janela);
        const HWND raiz = GetAncestor(janela, GA_ROOT);
        if (raiz == janela && filho.lVal == CHILDID_SELF) return true;
        Coisa achada = De(raiz);
        for (VARIANT v{}; achada.objeto; achada = Coisa(v.pdispVal, CHILDID_SELF)) {
            achada.objeto->accHitTest(r[0] + r[2] / 2, r[1] + r[3] / 2, &v);
            if (v.vt == VT_DISPATCH) continue;
            return v.lVal == filho.lVal && achada.Nome() == De(janela).Nome();
        }
        return false;
    }
};

// "EVENT NAME" of each that the process raises which is listened to; what names nothing by then is left out.
inline std::vector<std::string> eventos;

inline void CALLBACK NotarEvento(HWINEVENTHOOK, DWORD evento, HWND janela, LONG objeto, LONG filho, DWORD, DWORD) {
    IAccessible* dele = nullptr;
    VARIANT numero{};
    if (objeto == OBJID_CLIENT && AccessibleObjectFromEvent(janela, static_cast<DWORD>(objeto),
                                                            static_cast<DWORD>(filho), &dele, &numero) == S_OK)
        eventos.push_back(Formatar("{:x} {}", evento, Coisa(dele, numero.lVal).Nome()));
}

// From now on until it ends.
inline void EscutarEventos(DWORD pid) {
    eventos.clear();
    SetWinEventHook(EVENT_MIN, EVENT_OBJECT_VALUECHANGE, nullptr, NotarEvento, pid, 0, WINEVENT_OUTOFCONTEXT);
}

}  // namespace zu::launcher::teste
