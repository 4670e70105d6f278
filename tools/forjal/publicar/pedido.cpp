#include "tools/forjal/publicar/pedido.h"

#include <windows.h>

#include <chrono>
#include <limits>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/arquivo_secreto.h"
#include "tools/forjal/chave_da_lista.h"
#include "tools/forjal/paralelo.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
constexpr std::uint64_t kMaiorValidade = 36'500;  // days

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
    pedido.chave = CaminhoCanonico(opcoes.Texto(L"--chave"));
    if (!LerInfoArquivo(pedido.cliente, info) || !info.Pasta()) {
        erro = Formatar("--cliente: {} não é uma pasta", ParaUtf8(pedido.cliente.native()));
    } else if (LerInfoArquivo(pedido.saida, info) && !info.Pasta()) {
        erro = Formatar("--saida: {} não é uma pasta", ParaUtf8(pedido.saida.native()));
    } else if (Dentro(pedido.cliente, pedido.saida) || Dentro(pedido.saida, pedido.cliente)) {
        erro = "--saida: nem a mesma pasta de --cliente, nem uma dentro da outra";
    } else if (Dentro(pedido.cliente, pedido.chave) || Dentro(pedido.saida, pedido.chave)) {
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

bool LerRemocao(std::string_view opcao, const std::string& caminho, std::vector<std::string>& remover,
                std::string& erro) {
    if (!update::CaminhoSeguro(caminho)) {
        erro = Formatar("{}: \"{}\" é um caminho inseguro", opcao, caminho);
        return false;
    }
    if (update::CaminhoProtegido(caminho)) {
        erro = Formatar("{}: \"{}\" é um caminho protegido, que o launcher nunca remove", opcao, caminho);
        return false;
    }
    remover.push_back(update::NormalizarCaminho(caminho));
    return true;
}

bool LerRemocoes(const Opcoes& opcoes, std::vector<std::string>& remover, std::string& erro) {
    for (const std::wstring& texto : opcoes.Textos(L"--remover")) {
        if (!LerRemocao("--remover", ParaUtf8(texto), remover, erro)) return false;
    }
    for (const std::wstring& arquivo : opcoes.Textos(L"--remover-de")) {
        std::string texto;
        if (!LerArquivoInteiro(arquivo, texto)) {
            erro = Formatar("--remover-de: não foi possível ler {} (erro {})", ParaUtf8(arquivo), GetLastError());
            return false;
        }
        std::string_view resto = texto;
        if (resto.starts_with(kMarcaUtf8)) resto.remove_prefix(kMarcaUtf8.size());
        while (!resto.empty()) {
            std::string_view linha = TomarAte(resto, '\n');
            linha = linha.substr(0, linha.find_last_not_of(" \r") + 1);
            if (!linha.empty() && !LerRemocao("--remover-de", std::string(linha), remover, erro)) return false;
        }
    }
    return true;
}

}  // namespace

bool LerValidade(const Opcoes& opcoes, std::optional<update::Instante>& validade, std::string& erro) {
    std::uint64_t dias = 0;
    if (!opcoes.LerNumero(L"--validade-dias", 1, kMaiorValidade, dias, erro)) return false;
    if (dias > 0) {
        validade = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()) +
                   std::chrono::days(static_cast<int>(dias));
    }
    return true;
}

bool LerChaveAnterior(const Opcoes& opcoes, UpdateSigningKey& chave, std::string& erro) {
    if (!opcoes.Tem(L"--chave-anterior")) return true;
    BytesSecretos pub;
    if (!pub.Ler(opcoes.Texto(L"--chave-anterior"), kTamanhoPublica, erro)) {
        erro = Formatar("--chave-anterior: {}", erro);
        return false;
    }
    chave.assign(pub.Bytes().begin(), pub.Bytes().end());
    return true;
}

bool LerPedido(const Opcoes& opcoes, Pedido& pedido, std::string& erro) {
    std::uint64_t seq = 0;
    std::uint64_t mib = 0;
    if (!opcoes.LerNumero(L"--seq", 0, std::numeric_limits<std::int64_t>::max(), seq, erro) ||
        !opcoes.LerNumero(L"--partes-mib", 1, std::numeric_limits<std::uint32_t>::max(), mib, erro) ||
        !LerTexto(opcoes, L"--versao", pedido.lista.versao, erro) ||
        !LerTexto(opcoes, L"--chave-assets", pedido.lista.chaveAssets, erro) ||
        !LerRemocoes(opcoes, pedido.lista.remover, erro) || !LerValidade(opcoes, pedido.lista.validade, erro) ||
        !LerChaveAnterior(opcoes, pedido.chaveAnterior, erro)) {
        return false;
    }
    if (!opcoes.Tem(L"--sem-exclusoes")) pedido.exclusoes.AcrescentarAsDeSempre();
    for (const std::wstring& padrao : opcoes.Textos(L"--excluir"))
        pedido.exclusoes.Acrescentar(ParaUtf8(padrao));
    pedido.lista.seq = static_cast<std::int64_t>(seq);
    pedido.bytesPorParte = mib * kMiB;
    pedido.limpar = opcoes.Tem(L"--limpar");
    pedido.removerAusentes = opcoes.Tem(L"--remover-ausentes");
    pedido.muitasRemocoes = opcoes.Tem(L"--muitas-remocoes");
    pedido.confiarNaData = opcoes.Tem(L"--confiar-na-data");
    pedido.simular = opcoes.Tem(L"--simular");
    pedido.blocos = !opcoes.Tem(L"--sem-blocos");
    return LerPastas(opcoes, pedido, erro);
}

}  // namespace zu::launcher::forjal
