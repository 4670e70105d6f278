#include "core/instancia.h"

#include <algorithm>
#include <cstdint>
#include <thread>

#include "core/hash.h"
#include "core/texto.h"
#include "core/utf16.h"

namespace zu::launcher {
namespace {

constexpr std::size_t kDigitosDoNome = 16;
constexpr std::chrono::milliseconds kPasso{50};

}  // namespace

std::wstring NomeDaInstancia(const std::filesystem::path& pastaJogo) {
    const std::wstring& texto = pastaJogo.native();
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(texto.data());
    const std::string hex = ParaHex(Sha256Of({bytes, texto.size() * sizeof(wchar_t)}));
    return L"Local\\ZuLauncher-" + DeUtf8(hex.substr(0, kDigitosDoNome));
}

PosseDaPasta::~PosseDaPasta() {
    if (possui_ && mutex_) ReleaseMutex(mutex_.Valor());
}

bool PosseDaPasta::Tomar(std::chrono::milliseconds espera) {
    const auto fim = std::chrono::steady_clock::now() + espera;
    do {
        possui_ = possui_ || Tentar(std::min(espera, kPasso));
    } while (!possui_ && std::chrono::steady_clock::now() < fim);
    return possui_;
}

bool PosseDaPasta::Tentar(std::chrono::milliseconds espera) {
    if (!mutex_) mutex_.Trocar(CreateMutexW(nullptr, FALSE, nome_.c_str()));
    if (mutex_) {
        const DWORD veio = WaitForSingleObject(mutex_.Valor(), static_cast<DWORD>(espera.count()));
        return veio == WAIT_OBJECT_0 || veio == WAIT_ABANDONED;
    }
    if (GetLastError() != ERROR_ACCESS_DENIED) return true;
    std::this_thread::sleep_for(espera);
    return false;
}

}  // namespace zu::launcher
