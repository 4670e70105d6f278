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

bool EhEndereco(std::string_view texto) {
    return texto.starts_with("http://") || texto.starts_with("https://");
}

bool LerTextos(const Opcoes& opcoes, CamposSelados& campos, std::string& erro) {
    for (const auto& [opcao, campo, texto, endereco] : kOpcoesDeCampo) {
        campos.*texto = ParaUtf8(opcoes.Texto(opcao));
        const std::size_t bytes = (campos.*texto).size();
        if (bytes > campo.Limite()) {
            erro = Formatar("{}: o texto tem {} bytes em UTF-8, o limite é {}", ParaUtf8(opcao), bytes, campo.Limite());
            return false;
        }
        if (endereco && bytes != 0 && !EhEndereco(campos.*texto)) {
            erro = Formatar("{}: o endereço deve começar com http:// ou https://", ParaUtf8(opcao));
            return false;
        }
    }
    campos.updateAutomatico = !opcoes.Tem(L"--sem-update");
    return true;
}

}  // namespace

int RodarSelar(const Opcoes& opcoes, Saida& saida) {
    CamposSelados campos;
    Segredo segredo;
    std::string erro;
    if (!LerTextos(opcoes, campos, erro) || !segredo.Ler(opcoes, erro)) return Falhar(saida, kUsoErrado, erro);
    const std::filesystem::path caminho = opcoes.Texto(L"--saida");
    if (MesmoArquivo(caminho, opcoes.Texto(L"--segredo"))) {
        return Falhar(saida, kUsoErrado, "--saida: é o próprio arquivo de --segredo");
    }
    if (!GravarArquivoAtomico(caminho, Selar(MontarCorpo(campos), segredo.Bytes()))) {
        return Falhar(
            saida, kRecusado,
            Formatar("--saida: não foi possível gravar {} (erro {})", ParaUtf8(caminho.native()), GetLastError()));
    }
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
