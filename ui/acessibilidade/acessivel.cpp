#include "ui/acessibilidade/acessivel.h"

#include <atomic>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "ui/com.h"

namespace zu::launcher {
namespace {

// The child windows come behind the parts in the numbers by which the interface names children.
class Objeto final : public IAccessible, public IOleWindow {
 public:
    explicit Objeto(std::unique_ptr<Acessivel> fonte) : fonte_(std::move(fonte)) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** objeto) override;
    STDMETHODIMP_(ULONG) AddRef() override { return ++referencias_; }
    STDMETHODIMP_(ULONG) Release() override;

    STDMETHODIMP get_accParent(IDispatch** pai) override;
    STDMETHODIMP get_accChildCount(long* quantos) override;
    STDMETHODIMP get_accChild(VARIANT filho, IDispatch** objeto) override;
    STDMETHODIMP get_accName(VARIANT filho, BSTR* t) override { return Texto(filho, &Elemento::nome, t); }
    STDMETHODIMP get_accValue(VARIANT filho, BSTR* t) override { return Texto(filho, &Elemento::valor, t); }
    STDMETHODIMP get_accDescription(VARIANT filho, BSTR* t) override { return Texto(filho, &Elemento::descricao, t); }
    STDMETHODIMP get_accDefaultAction(VARIANT filho, BSTR* t) override { return Texto(filho, &Elemento::acao, t); }
    STDMETHODIMP get_accRole(VARIANT filho, VARIANT* papel) override { return Numero(filho, &Elemento::papel, papel); }
    STDMETHODIMP get_accState(VARIANT filho, VARIANT* e) override { return Numero(filho, &Elemento::estado, e); }
    STDMETHODIMP get_accFocus(VARIANT* filho) override;
    STDMETHODIMP get_accSelection(VARIANT* filhos) override;
    STDMETHODIMP accSelect(long modo, VARIANT filho) override;
    STDMETHODIMP accLocation(long* x, long* y, long* largura, long* altura, VARIANT filho) override;
    STDMETHODIMP accHitTest(long x, long y, VARIANT* filho) override;
    STDMETHODIMP accDoDefaultAction(VARIANT filho) override;

    STDMETHODIMP GetWindow(HWND* janela) override;

    // What the interface has and nothing here needs.
    STDMETHODIMP get_accHelp(VARIANT, BSTR* t) override { return Nada(t); }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT, BSTR* t) override { return Nada(t); }
    STDMETHODIMP get_accHelpTopic(BSTR* t, VARIANT, long*) override { return Nada(t); }
    STDMETHODIMP accNavigate(long, VARIANT, VARIANT*) override { return E_NOTIMPL; }
    STDMETHODIMP put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetTypeInfoCount(UINT* quantos) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

 private:
    virtual ~Objeto() = default;

    static HRESULT Nada(BSTR* texto);
    HRESULT Texto(VARIANT filho, std::wstring Elemento::*campo, BSTR* texto);
    HRESULT Numero(VARIANT filho, LONG Elemento::*campo, VARIANT* numero);
    [[nodiscard]] std::optional<Elemento> Achar(const VARIANT& filho) const;
    // The first part of which `condicao` holds, as the interface numbers it; CHILDID_SELF: none.
    template <class Condicao>
    [[nodiscard]] LONG PrimeiraParte(Condicao condicao) const;
    template <class Trabalho>
    HRESULT Responder(Trabalho trabalho);

    std::atomic<ULONG> referencias_ = 1;
    std::unique_ptr<Acessivel> fonte_;
};

HRESULT DeJanela(HWND janela, LONG objeto, IDispatch** resposta) {
    return AccessibleObjectFromWindow(janela, static_cast<DWORD>(objeto), __uuidof(IDispatch),
                                      reinterpret_cast<void**>(resposta));
}

HRESULT DeJanela(HWND janela, VARIANT* resposta) {
    const HRESULT hr = DeJanela(janela, OBJID_CLIENT, &resposta->pdispVal);
    if (hr == S_OK) resposta->vt = VT_DISPATCH;
    return hr;
}

HRESULT DeNumero(LONG numero, VARIANT* resposta) {
    resposta->vt = VT_I4;
    resposta->lVal = numero;
    return S_OK;
}

// Nothing may be thrown to the system that calls.
template <class Trabalho>
HRESULT Objeto::Responder(Trabalho trabalho) {
    try {
        return fonte_->Handle() == nullptr ? CO_E_OBJNOTCONNECTED : trabalho();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception&) {
        return E_FAIL;
    }
}

STDMETHODIMP Objeto::QueryInterface(REFIID iid, void** objeto) {
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == __uuidof(IAccessible)) {
        *objeto = static_cast<IAccessible*>(this);
    } else if (iid == __uuidof(IOleWindow)) {
        *objeto = static_cast<IOleWindow*>(this);
    } else {
        *objeto = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

STDMETHODIMP_(ULONG) Objeto::Release() {
    const ULONG restantes = --referencias_;
    if (restantes == 0) delete this;
    return restantes;
}

STDMETHODIMP Objeto::GetTypeInfoCount(UINT* quantos) {
    *quantos = 0;
    return S_OK;
}

HRESULT Objeto::Nada(BSTR* texto) {
    *texto = nullptr;
    return S_FALSE;
}

std::optional<Elemento> Objeto::Achar(const VARIANT& filho) const {
    if (filho.vt != VT_I4 || filho.lVal < CHILDID_SELF || filho.lVal > fonte_->Partes()) return {};
    return filho.lVal == CHILDID_SELF ? fonte_->Inteiro() : fonte_->Parte(filho.lVal - 1);
}

template <class Condicao>
LONG Objeto::PrimeiraParte(Condicao condicao) const {
    const int partes = fonte_->Partes();
    for (int i = 0; i < partes; ++i)
        if (condicao(fonte_->Parte(i))) return i + 1;
    return CHILDID_SELF;
}

HRESULT Objeto::Texto(VARIANT filho, std::wstring Elemento::*campo, BSTR* texto) {
    *texto = nullptr;
    return Responder([&] {
        const std::optional<Elemento> elemento = Achar(filho);
        if (!elemento) return E_INVALIDARG;
        const std::wstring& valor = *elemento.*campo;
        if (valor.empty()) return S_FALSE;
        *texto = SysAllocStringLen(valor.data(), static_cast<UINT>(valor.size()));
        return *texto == nullptr ? E_OUTOFMEMORY : S_OK;
    });
}

HRESULT Objeto::Numero(VARIANT filho, LONG Elemento::*campo, VARIANT* numero) {
    numero->vt = VT_EMPTY;
    return Responder([&] {
        const std::optional<Elemento> elemento = Achar(filho);
        return elemento ? DeNumero(*elemento.*campo, numero) : E_INVALIDARG;
    });
}

STDMETHODIMP Objeto::get_accParent(IDispatch** pai) {
    *pai = nullptr;
    return Responder([&] {
        const HWND janela = fonte_->Handle();
        const bool filha = (GetWindowLongPtrW(janela, GWL_STYLE) & WS_CHILD) != 0;
        return filha ? DeJanela(GetParent(janela), OBJID_CLIENT, pai) : DeJanela(janela, OBJID_WINDOW, pai);
    });
}

STDMETHODIMP Objeto::get_accChildCount(long* quantos) {
    *quantos = 0;
    return Responder([&] {
        *quantos = fonte_->Partes() + static_cast<long>(fonte_->Filhos().size());
        return S_OK;
    });
}

STDMETHODIMP Objeto::get_accChild(VARIANT filho, IDispatch** objeto) {
    *objeto = nullptr;
    return Responder([&] {
        if (filho.vt != VT_I4 || filho.lVal < CHILDID_SELF) return E_INVALIDARG;
        const int partes = fonte_->Partes();
        // A part is no object of its own.
        if (filho.lVal <= partes) return S_FALSE;
        const std::vector<HWND> filhos = fonte_->Filhos();
        const auto lugar = static_cast<std::size_t>(filho.lVal - partes - 1);
        return lugar < filhos.size() ? DeJanela(filhos[lugar], OBJID_CLIENT, objeto) : E_INVALIDARG;
    });
}

STDMETHODIMP Objeto::get_accFocus(VARIANT* filho) {
    filho->vt = VT_EMPTY;
    return Responder([&] {
        const HWND foco = GetFocus();
        if (foco == fonte_->Handle()) return DeNumero(CHILDID_SELF, filho);
        return IsChild(fonte_->Handle(), foco) ? DeJanela(foco, filho) : S_FALSE;
    });
}

STDMETHODIMP Objeto::get_accSelection(VARIANT* filhos) {
    filhos->vt = VT_EMPTY;
    return Responder([&] {
        const LONG parte = PrimeiraParte([](const Elemento& e) { return (e.estado & STATE_SYSTEM_SELECTED) != 0; });
        return parte == CHILDID_SELF ? S_FALSE : DeNumero(parte, filhos);
    });
}

STDMETHODIMP Objeto::accSelect(long modo, VARIANT filho) {
    return Responder([&] {
        const std::optional<Elemento> elemento = Achar(filho);
        if (!elemento) return E_INVALIDARG;
        const HWND janela = fonte_->Handle();
        if (filho.lVal == CHILDID_SELF && (modo & SELFLAG_TAKEFOCUS) != 0) {
            if ((elemento->estado & STATE_SYSTEM_FOCUSABLE) == 0) return S_FALSE;
            SetForegroundWindow(GetAncestor(janela, GA_ROOT));
            SetFocus(janela);
            return S_OK;
        }
        const bool escolhe = (elemento->estado & STATE_SYSTEM_SELECTABLE) != 0 && (modo & SELFLAG_TAKESELECTION) != 0;
        if (!escolhe) return E_INVALIDARG;
        PostMessageW(janela, MSG_ACAO_PADRAO, static_cast<WPARAM>(filho.lVal), 0);
        return S_OK;
    });
}

STDMETHODIMP Objeto::accLocation(long* x, long* y, long* largura, long* altura, VARIANT filho) {
    *x = *y = *largura = *altura = 0;
    return Responder([&] {
        std::optional<Elemento> elemento = Achar(filho);
        if (!elemento) return E_INVALIDARG;
        RECT& r = elemento->lugar;
        if (filho.lVal == CHILDID_SELF) GetClientRect(fonte_->Handle(), &r);
        MapWindowPoints(fonte_->Handle(), nullptr, reinterpret_cast<POINT*>(&r), 2);
        *x = r.left;
        *y = r.top;
        *largura = r.right - r.left;
        *altura = r.bottom - r.top;
        return S_OK;
    });
}

STDMETHODIMP Objeto::accHitTest(long x, long y, VARIANT* filho) {
    filho->vt = VT_EMPTY;
    return Responder([&] {
        const HWND janela = fonte_->Handle();
        POINT ponto{x, y};
        ScreenToClient(janela, &ponto);
        const HWND atingida = ChildWindowFromPointEx(janela, ponto, CWP_SKIPINVISIBLE);
        if (atingida == nullptr) return S_FALSE;
        if (atingida != janela) return DeJanela(atingida, filho);
        const auto atinge = [&](const Elemento& e) {
            return (e.estado & STATE_SYSTEM_INVISIBLE) == 0 && PtInRect(&e.lugar, ponto) != FALSE;
        };
        return DeNumero(PrimeiraParte(atinge), filho);
    });
}

STDMETHODIMP Objeto::accDoDefaultAction(VARIANT filho) {
    return Responder([&] {
        const std::optional<Elemento> elemento = Achar(filho);
        if (!elemento) return E_INVALIDARG;
        if (elemento->acao.empty()) return DISP_E_MEMBERNOTFOUND;
        PostMessageW(fonte_->Handle(), MSG_ACAO_PADRAO, static_cast<WPARAM>(filho.lVal), 0);
        return S_OK;
    });
}

STDMETHODIMP Objeto::GetWindow(HWND* janela) {
    *janela = fonte_->Handle();
    return *janela == nullptr ? CO_E_OBJNOTCONNECTED : S_OK;
}

}  // namespace

LRESULT ResponderAcessivel(WPARAM wParam, LPARAM lParam, std::unique_ptr<Acessivel> acessivel) {
    if (static_cast<LONG>(lParam) != OBJID_CLIENT) return 0;
    const Com<IAccessible> objeto(new Objeto(std::move(acessivel)));
    return LresultFromObject(__uuidof(IAccessible), wParam, objeto.Valor());
}

void Avisar(DWORD evento, HWND janela, LONG parte) {
    NotifyWinEvent(evento, janela, OBJID_CLIENT, parte);
}

}  // namespace zu::launcher
