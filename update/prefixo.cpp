#include "update/prefixo.h"

#include <windows.h>

#include <algorithm>
#include <memory>

#include "core/arquivo.h"
#include "core/handle.h"
#include "update/hash_arquivo.h"
#include "update/lista.h"

namespace zu::launcher {
namespace {

constexpr DWORD kBloco = 1024 * 1024;

HandleArquivo Abrir(const std::filesystem::path& caminho, DWORD acesso, DWORD disposicao) {
    return AbrirParaEscrever(caminho, acesso, FILE_SHARE_READ, disposicao);
}

bool Posicionar(const HandleArquivo& arquivo, std::uint64_t onde) {
    LARGE_INTEGER lugar{};
    lugar.QuadPart = static_cast<LONGLONG>(onde);
    return arquivo && SetFilePointerEx(arquivo.Valor(), lugar, nullptr, FILE_BEGIN) != 0;
}

// From where the one stands to its end, onto where the other stands, down to the disk.
bool Copiar(const HandleArquivo& de, const HandleArquivo& para, const std::atomic<bool>& cancelar) {
    const auto bloco = std::make_unique_for_overwrite<std::uint8_t[]>(kBloco);
    while (!cancelar.load()) {
        DWORD lidos = 0;
        DWORD escritos = 0;
        if (ReadFile(de.Valor(), bloco.get(), kBloco, &lidos, nullptr) == 0) return false;
        if (lidos == 0) return FlushFileBuffers(para.Valor()) != 0;
        if (WriteFile(para.Valor(), bloco.get(), lidos, &escritos, nullptr) == 0 || escritos != lidos) return false;
    }
    return false;
}

// What the part has beyond the first `juntos` bytes of the item, counted from their beginning.
std::uint64_t FimDaParte(const Transferencia& t, std::uint64_t parte, std::uint32_t numero, std::uint64_t juntos) {
    const std::uint64_t inicio = (numero - 1) * parte;
    const std::uint64_t tem = TamanhoDoArquivo(CaminhoDaParte(t.destino, numero));
    // A part longer than it can be is another version's.
    return inicio > juntos || tem > std::min(parte, t.item.tamanho - inicio) ? juntos : std::max(juntos, inicio + tem);
}

}  // namespace

bool JuntarPrefixo(const Transferencia& t, std::uint64_t parte) {
    const HandleArquivo destino = Abrir(t.destino, GENERIC_WRITE, OPEN_ALWAYS);
    std::uint64_t juntos = TamanhoDoArquivo(t.destino);
    for (std::uint32_t numero = 1; numero <= t.item.partes; ++numero) {
        const std::uint64_t fim = FimDaParte(t, parte, numero, juntos);
        if (fim == juntos) continue;
        const HandleArquivo entrada = Abrir(CaminhoDaParte(t.destino, numero), GENERIC_READ, OPEN_EXISTING);
        if (!Posicionar(entrada, juntos - (numero - 1) * parte) || !Posicionar(destino, juntos) ||
            !Copiar(entrada, destino, t.cancelar)) {
            return false;
        }
        juntos = fim;
    }
    ApagarPartes(t.destino, t.item.partes);
    return static_cast<bool>(destino);
}

// From the end, so that there is never more on the disk than the prefix and one part.
void RepartirPrefixo(const Transferencia& t, std::uint64_t parte) {
    const std::uint64_t tamanho = TamanhoDoArquivo(t.destino);
    if (tamanho == 0 || tamanho >= t.item.tamanho) return;
    const std::atomic<bool> semCancelar = false;  // what is half done here would come again
    // Also the empty part behind a complete one, which tells that it is.
    for (auto numero = static_cast<std::uint32_t>(tamanho / parte + 1); numero > 1; --numero) {
        const HandleArquivo inteiro = Abrir(t.destino, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
        const HandleArquivo saida = Abrir(CaminhoDaParte(t.destino, numero), GENERIC_WRITE, CREATE_ALWAYS);
        const std::uint64_t inicio = (numero - 1) * parte;
        if (!saida || !Posicionar(inteiro, inicio) || !Copiar(inteiro, saida, semCancelar) ||
            !Posicionar(inteiro, inicio) || SetEndOfFile(inteiro.Valor()) == 0) {
            return;
        }
    }
    MoverSobre(t.destino, CaminhoDaParte(t.destino, 1));
}

}  // namespace zu::launcher
