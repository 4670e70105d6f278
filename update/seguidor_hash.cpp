#include "update/seguidor_hash.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <new>
#include <system_error>

namespace zu::launcher {

SeguidorDeHash::~SeguidorDeHash() {
    {
        const std::lock_guard guarda(trava_);
        abandonado_ = true;
    }
    aviso_.notify_one();
    if (leitor_.joinable()) leitor_.join();
}

void SeguidorDeHash::Avancar(std::uint64_t bytes) {
    {
        const std::lock_guard guarda(trava_);
        disponiveis_ = bytes;
    }
    aviso_.notify_one();
    if (leitor_.joinable() || desistiu_) return;
    try {
        leitor_ = std::thread(&SeguidorDeHash::Ler, this);
    } catch (const std::system_error&) {
        desistiu_ = true;  // the file is then read once it is complete
    }
}

ResultadoHash SeguidorDeHash::Terminar() {
    if (!leitor_.joinable()) return {};
    {
        const std::lock_guard guarda(trava_);
        completo_ = true;
    }
    aviso_.notify_one();
    leitor_.join();
    return resultado_;
}

std::uint64_t SeguidorDeHash::Esperar(std::uint64_t lidos) {
    std::unique_lock guarda(trava_);
    aviso_.wait(guarda, [&] { return abandonado_ || completo_ || disponiveis_ > lidos; });
    return abandonado_ ? 0 : disponiveis_ - lidos;
}

void SeguidorDeHash::Ler() {
    try {
        resultado_ = LerTudo();
    } catch (const std::bad_alloc&) {
        resultado_ = {};
    }
}

ResultadoHash SeguidorDeHash::LerTudo() {
    constexpr DWORD kBloco = 1024 * 1024;
    const HandleArquivo arquivo(CreateFileW(caminho_.c_str(), GENERIC_READ,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                            OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    const auto bloco = std::make_unique_for_overwrite<std::uint8_t[]>(kBloco);
    HashCorrente hash;
    bool ok = static_cast<bool>(arquivo);
    while (ok) {
        const std::uint64_t restantes = Esperar(hash.Bytes());
        if (restantes == 0) break;
        DWORD lidos = 0;
        const auto pedidos = static_cast<DWORD>(std::min<std::uint64_t>(restantes, kBloco));
        ok = ReadFile(arquivo.Valor(), bloco.get(), pedidos, &lidos, nullptr) != 0 && lidos != 0;
        hash.Alimentar(bloco.get(), lidos);
    }
    return hash.Terminar(ok);
}

}  // namespace zu::launcher
