#include "tools/forjal/publicar/pedido.h"

#include <limits>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

// Whether a canonical path is the folder or lies below it.
bool Dentro(const std::filesystem::path& pasta, const std::filesystem::path& caminho) {
    const std::string de = ChaveDoNome(ParaUtf8(caminho.native()) + "\\");
    std::string em = ChaveDoNome(ParaUtf8(pasta.native()));
    if (!em.ends_with('\\')) em.push_back('\\');
    return de.starts_with(em);
}

bool LerPastas(const Opcoes& opcoes, Pedido& pedido, std::string& erro) {
    InfoArquivo info;
    pedido.cliente = CaminhoCanonico(opcoes.Texto(L"--cliente"));
    pedido.saida = CaminhoCanonico(opcoes.Texto(L"--saida"));
    const std::filesystem::path chave = CaminhoCanonico(opcoes.Texto(L"--chave"));
    if (!LerInfoArquivo(pedido.cliente, info) || !info.Pasta()) {
        erro = Formatar("--cliente: {} não é uma pasta", ParaUtf8(pedido.cliente.native()));
    } else if (LerInfoArquivo(pedido.saida, info) && !info.Pasta()) {
        erro = Formatar("--saida: {} não é uma pasta", ParaUtf8(pedido.saida.native()));
    } else if (Dentro(pedido.cliente, pedido.saida) || Dentro(pedido.saida, pedido.cliente)) {
        erro = "--saida: nem a mesma pasta de --cliente, nem uma dentro da outra";
    } else if (Dentro(pedido.cliente, chave) || Dentro(pedido.saida, chave)) {
        erro = "--chave: a chave privada não pode ficar dentro de --cliente nem de --saida";
    } else {
        return true;
    }
    return false;
}

bool LerTexto(const Opcoes& opcoes, std::wstring_view opcao, std::string& texto, std::string& erro) {
    texto = ParaUtf8(opcoes.Texto(opcao));
    if (texto.find_first_of("\t\n\r") == std::string::npos) return true;
    erro = Formatar("{}: o texto não pode ter tabulação nem quebra de linha", ParaUtf8(opcao));
    return false;
}

bool LerRemocoes(const Opcoes& opcoes, std::vector<std::string>& remover, std::string& erro) {
    for (const std::wstring& texto : opcoes.Textos(L"--remover")) {
        const std::string caminho = ParaUtf8(texto);
        if (!update::CaminhoSeguro(caminho)) {
            erro = Formatar("--remover={}: caminho inseguro", caminho);
            return false;
        }
        if (update::CaminhoProtegido(caminho)) {
            erro = Formatar("--remover={}: caminho protegido, que o launcher nunca remove", caminho);
            return false;
        }
        remover.push_back(update::NormalizarCaminho(caminho));
    }
    return true;
}

}  // namespace

bool LerPedido(const Opcoes& opcoes, Pedido& pedido, std::string& erro) {
    std::uint64_t seq = 0;
    std::uint64_t mib = 0;
    if (!opcoes.LerNumero(L"--seq", 0, std::numeric_limits<std::int64_t>::max(), seq, erro) ||
        !opcoes.LerNumero(L"--partes-mib", 1, std::numeric_limits<std::uint32_t>::max(), mib, erro) ||
        !LerTexto(opcoes, L"--versao", pedido.lista.versao, erro) ||
        !LerTexto(opcoes, L"--chave-assets", pedido.lista.chaveAssets, erro) ||
        !LerRemocoes(opcoes, pedido.lista.remover, erro)) {
        return false;
    }
    pedido.lista.seq = static_cast<std::int64_t>(seq);
    pedido.bytesPorParte = mib * kMiB;
    pedido.limpar = opcoes.Tem(L"--limpar");
    return LerPastas(opcoes, pedido, erro);
}

}  // namespace zu::launcher::forjal
