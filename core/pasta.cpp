#include "core/pasta.h"

#include <string_view>

#include "core/handle.h"

namespace zu::launcher {
namespace {

struct TracosBusca {
    using Tipo = HANDLE;
    static Tipo Nulo() noexcept { return INVALID_HANDLE_VALUE; }  // NOLINT(performance-no-int-to-ptr)
    static void Fechar(Tipo h) noexcept { FindClose(h); }
};

}  // namespace

bool ListarPasta(const std::filesystem::path& pasta, const std::function<void(const WIN32_FIND_DATAW&)>& visitar) {
    WIN32_FIND_DATAW achado{};
    const Handle<TracosBusca> busca(FindFirstFileW((pasta / L"*").c_str(), &achado));
    bool ha = static_cast<bool>(busca);
    while (ha) {
        const std::wstring_view nome = achado.cFileName;
        if (nome != L"." && nome != L"..") visitar(achado);
        ha = FindNextFileW(busca.Valor(), &achado) != 0;
    }
    return GetLastError() == ERROR_NO_MORE_FILES;
}

bool EhLink(const WIN32_FIND_DATAW& achado) {
    if ((achado.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
    return achado.dwReserved0 == 0 || IsReparseTagNameSurrogate(achado.dwReserved0);
}

}  // namespace zu::launcher
