#include "update/trocas.h"

#include <windows.h>

#include <vector>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/formato.h"
#include "core/log.h"
#include "core/processo.h"
#include "core/utf16.h"
#include "update/estado.h"
#include "update/registros.h"

namespace zu::launcher {
namespace {

bool GravarPendentes(const std::filesystem::path& arquivo, std::span<const TrocaPendente> trocas) {
    std::vector<LinhaPendente> linhas;
    for (const TrocaPendente& troca : trocas) {
        linhas.push_back({ParaUtf8(troca.origem.native()), ParaUtf8(troca.destino.native())});
    }
    return CriarPastas(arquivo.parent_path()) && GravarArquivoAtomico(arquivo, TextoDosPendentes(linhas));
}

std::wstring LinhaDeComando(const std::filesystem::path& helper, const std::filesystem::path& pendentes) {
    std::wstring linha = EntreAspas(helper.native());
    linha += DeUtf8(Formatar(" --pid={} ", GetCurrentProcessId()));
    linha += EntreAspas(L"--lista=" + pendentes.native());
    linha += L" " + EntreAspas(L"--reabrir=" + CaminhoDoPrograma().native());
    linha += L" --";
    for (const std::wstring& argumento : ObterConfig().argumentos)
        linha += L" " + EntreAspas(argumento);
    return linha + L" --reaberto";
}

}  // namespace

bool IniciarUpdaterHelper(std::span<const TrocaPendente> trocas, std::string& erro) {
    const std::filesystem::path helper = PastaDoPrograma() / L"UpdaterHelper.exe";
    InfoArquivo info;
    if (!LerInfoArquivo(helper, info) || info.Pasta()) {
        erro = "UpdaterHelper.exe não encontrado: reinstale o launcher.";
        return false;
    }
    const std::filesystem::path pendentes = CaminhoPendente();
    if (!GravarPendentes(pendentes, trocas)) {
        erro = "não foi possível gravar Config\\Launcher.pendente";
        return false;
    }
    const Processo aberto = IniciarProcesso(LinhaDeComando(helper, pendentes), ObterConfig().pastaJogo);
    if (!aberto) {
        erro = Formatar("não foi possível abrir o UpdaterHelper.exe (erro {})", GetLastError());
        return false;
    }
    // It has no window, but hands the right on to the launcher that it opens.
    AllowSetForegroundWindow(aberto.pid);
    LogLinha("UpdaterHelper iniciado para {} troca(s) pendente(s)", trocas.size());
    return true;
}

}  // namespace zu::launcher
