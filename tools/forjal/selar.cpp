// "Forjal selar" and "Forjal abrir": the launcher's sealed settings file, made and read.

#include <windows.h>

#include <algorithm>
#include <array>

#include "app/selo.h"
#include "core/arquivo.h"
#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/arquivo_secreto.h"
#include "tools/forjal/comandos.h"

namespace zu::launcher::forjal {
namespace {

struct OpcaoDeCampo {
    std::wstring_view opcao;
    CampoDeTexto campo;
    std::string CamposSelados::*texto;
    bool endereco;  // of a web server
};

constexpr std::array<OpcaoDeCampo, 5> kOpcoesDeCampo{{
    {L"--nome", kCampoNome, &CamposSelados::nome, false},
    {L"--update", kCampoUpdate, &CamposSelados::update, true},
    {L"--site", kCampoSite, &CamposSelados::site, true},
    {L"--seletor", kCampoSeletor, &CamposSelados::seletor, false},
    {L"--registro", kCampoRegistro, &CamposSelados::registro, true},
}};

class Segredo {
 public:
    ~Segredo() { SecureZeroMemory(segredo_.data(), segredo_.size()); }

    bool Ler(const Opcoes& opcoes, std::string& erro) {
        BytesSecretos bytes;
        if (!bytes.Ler(opcoes.Texto(L"--segredo"), segredo_.size(), erro)) {
            erro = Formatar("--segredo: {}", erro);
            return false;
        }
        std::ranges::copy(bytes.Bytes(), segredo_.begin());
        return true;
    }
    [[nodiscard]] const SegredoSelo& Bytes() const { return segredo_; }

 private:
    SegredoSelo segredo_{};
};

// Why a text is no address of a web server; empty: it is one.
std::string_view RecusaDoEndereco(std::string_view texto) {
    const std::size_t fim = texto.starts_with("http://") ? 7 : texto.starts_with("https://") ? 8 : 0;
    if (fim == 0) return "o endereço deve começar com http:// ou https://";
    if (std::ranges::any_of(texto, [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7F'; })) {
        return "o endereço não pode ter espaços";
    }
    std::string_view servidor = texto.substr(fim);
    servidor = servidor.substr(0, servidor.find_first_of("/?#\\"));
    servidor = servidor.substr(servidor.find('@') + 1);  // behind a user's name; the whole without one
    return servidor.empty() || servidor.front() == ':' ? "falta o servidor no endereço" : "";
}

bool LerTextos(const Opcoes& opcoes, CamposSelados& campos, std::string& erro) {
    for (const auto& [opcao, campo, texto, endereco] : kOpcoesDeCampo) {
        campos.*texto = ParaUtf8(opcoes.Texto(opcao));
        const std::size_t bytes = (campos.*texto).size();
        if (bytes > campo.Limite()) {
            erro = Formatar("{}: o texto tem {} bytes em UTF-8, o limite é {}", ParaUtf8(opcao), bytes, campo.Limite());
            return false;
        }
        const std::string_view recusa = endereco && bytes != 0 ? RecusaDoEndereco(campos.*texto) : "";
        if (!recusa.empty()) {
            erro = Formatar("{}: {}", ParaUtf8(opcao), recusa);
            return false;
        }
    }
    campos.updateAutomatico = !opcoes.Tem(L"--sem-update");
    return true;
}

// Whatever else stands there is not ours to replace: it may be a key.
bool PodeSubstituir(const std::filesystem::path& caminho, const SegredoSelo& segredo) {
    InfoArquivo info;
    std::string antigo;
    std::string recusa;
    CorpoSelado corpo{};
    return !LerInfoArquivo(caminho, info) ||
           (!info.Pasta() && info.tamanho == kTamanhoSelado && LerArquivoInteiro(caminho, antigo) &&
            AbrirSelado(antigo, segredo, corpo, recusa));
}

// Reads back what has been written, as the launcher will.
bool AbreComoPedido(const std::filesystem::path& caminho, const CorpoSelado& pedido, const SegredoSelo& segredo,
                    std::string& recusa) {
    std::string selado;
    CorpoSelado corpo{};
    if (!LerArquivoInteiro(caminho, selado)) {
        recusa = Formatar("não foi possível ler o que foi gravado (erro {})", GetLastError());
    } else if (AbrirSelado(selado, segredo, corpo, recusa)) {
        if (corpo == pedido) return true;
        recusa = "o que foi gravado não é o que foi pedido";
    }
    return false;
}

}  // namespace

int RodarSelar(const Opcoes& opcoes, Saida& saida) {
    CamposSelados campos;
    Segredo segredo;
    std::string erro;
    if (!LerTextos(opcoes, campos, erro) || !segredo.Ler(opcoes, erro)) return Falhar(saida, kUsoErrado, erro);
    const std::filesystem::path caminho = opcoes.Texto(L"--saida");
    if (!PodeSubstituir(caminho, segredo.Bytes())) {
        return Falhar(saida, kRecusado,
                      Formatar("--saida: {} já existe e não é um arquivo selado com este segredo; não é substituído",
                               ParaUtf8(caminho.native())));
    }
    const CorpoSelado corpo = MontarCorpo(campos);
    if (!GravarArquivoAtomico(caminho, Selar(corpo, segredo.Bytes()))) {
        return Falhar(
            saida, kRecusado,
            Formatar("--saida: não foi possível gravar {} (erro {})", ParaUtf8(caminho.native()), GetLastError()));
    }
    if (!AbreComoPedido(caminho, corpo, segredo.Bytes(), erro)) {
        return Falhar(saida, kRecusado, Formatar("{}: {}", ParaUtf8(caminho.native()), erro));
    }
    if (campos.update.empty()) saida.Linha("Aviso: sem --update= o launcher não atualiza o cliente.");
    saida.Linha(Formatar("{}: {} bytes", ParaUtf8(caminho.native()), kTamanhoSelado));
    return kFeito;
}

int RodarAbrir(const Opcoes& opcoes, Saida& saida) {
    Segredo segredo;
    std::string erro;
    if (!segredo.Ler(opcoes, erro)) return Falhar(saida, kUsoErrado, erro);
    std::string arquivo;
    if (!LerArquivoInteiro(opcoes.Arquivo(), arquivo)) {
        return Falhar(saida, kRecusado,
                      Formatar("{}: não foi possível ler (erro {})", ParaUtf8(opcoes.Arquivo()), GetLastError()));
    }
    CorpoSelado corpo{};
    if (!AbrirSelado(arquivo, segredo.Bytes(), corpo, erro)) return Falhar(saida, kRecusado, erro);
    const CamposSelados campos = LerCampos(corpo);
    for (const auto& [opcao, campo, texto, endereco] : kOpcoesDeCampo) {
        saida.Linha(Formatar("{}: {}", ParaUtf8(opcao.substr(2)), campos.*texto));
    }
    saida.Linha(Formatar("update automático: {}", campos.updateAutomatico ? "sim" : "não"));
    return kFeito;
}

}  // namespace zu::launcher::forjal
