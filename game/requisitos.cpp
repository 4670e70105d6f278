#include "game/requisitos.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <exception>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>

#include "core/arquivo.h"
#include "core/config.h"
#include "core/excecao.h"
#include "core/log.h"
#include "core/processo.h"
#include "core/thread_solta.h"
#include "core/utf16.h"
#include "game/relatorio.h"

namespace zu::launcher {
namespace {

constexpr DWORD kEsperaDoFim = 5'000;  // ms, for a game that has been ended to let go of its files

struct Publicacao {
    std::mutex trava;
    ResultadoRequisitos resultado;
    std::atomic<std::uint32_t> geracao = 0;
};

// Never destroyed: a probe may outlive the front end.
Publicacao& Publicado() {
    static auto* const publicado = new Publicacao;
    return *publicado;
}

std::filesystem::path CaminhoDoRelatorio() {
    std::array<wchar_t, 260> pasta{};
    const DWORD tamanho = GetTempPathW(static_cast<DWORD>(pasta.size()), pasta.data());
    // A folder name that does not fit leaves the buffer undefined.
    const std::filesystem::path raiz(tamanho < pasta.size() ? std::wstring(pasta.data(), tamanho) : std::wstring());
    return raiz / DeUtf8(Formatar("ZuLauncher-requisitos-{}.json", GetCurrentProcessId()));
}

std::wstring LinhaDeComando(const std::filesystem::path& jogo, const std::filesystem::path& relatorio) {
    std::wstring linha = EntreAspas(jogo.native()) + L" " + EntreAspas(L"--requisitos-json=" + relatorio.native());
    const std::wstring& simular = ObterConfig().requisitosSimular;
    if (!simular.empty()) linha += L" " + EntreAspas(L"--requisitos-simular=" + simular);
    return linha;
}

// A launcher that ends meanwhile takes the diagnosis with it: nobody would end one that hangs, and a "Zu.exe" left
// behind counts as the game being played.
HandleKernel GrupoQueAcabaComOLauncher() {
    HandleKernel grupo(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limites{};
    limites.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(grupo.Valor(), JobObjectExtendedLimitInformation, &limites, sizeof limites);
    return grupo;
}

// A game that does not start is told by the report that is not there.
void RodarJogo(std::wstring linhaDeComando, std::chrono::milliseconds limite) {
    const HandleKernel grupo = GrupoQueAcabaComOLauncher();
    TravaDaCriacao trava = TravarCriacao();
    const Processo jogo = IniciarProcesso(trava, std::move(linhaDeComando), ObterConfig().pastaJogo, CREATE_NO_WINDOW);
    if (!jogo) return;
    AssignProcessToJobObject(grupo.Valor(), jogo.processo.Valor());
    trava.unlock();
    const HANDLE processo = jogo.processo.Valor();
    if (WaitForSingleObject(processo, static_cast<DWORD>(limite.count())) != WAIT_TIMEOUT) return;
    TerminateProcess(processo, 1);
    WaitForSingleObject(processo, kEsperaDoFim);
}

bool LerArquivoDoRelatorio(const std::filesystem::path& caminho, ResultadoRequisitos& resultado) {
    std::string documento;
    std::string erro;
    return LerArquivoInteiro(caminho, documento) && LerRelatorio(documento, resultado, erro);
}

void PerguntarAoJogo(const std::filesystem::path& jogo, const std::filesystem::path& relatorio,
                     std::chrono::milliseconds limite, ResultadoRequisitos& resultado) {
    RodarJogo(LinhaDeComando(jogo, relatorio), limite);
    if (!LerArquivoDoRelatorio(relatorio, resultado)) {
        LogLinha("Requisitos: o Zu.exe não gerou o diagnóstico (versão antiga sem --requisitos-json?)");
        return;
    }
    LogLinha("Requisitos: DirectX 12 {} | Vulkan {} | {} | {}", resultado.d3d12 ? "sim" : "não",
             resultado.vulkan ? "sim" : "não", resultado.placa, resultado.titulo);
}

// All probes of a launcher share one report name: a run that has been overtaken leaves the file to the newer run, as
// long as that one still needs it.
bool TomarArquivo(std::uint32_t geracao, const std::filesystem::path& relatorio) {
    Publicacao& publicado = Publicado();
    const std::lock_guard guarda(publicado.trava);
    if (publicado.geracao != geracao) return false;
    DeleteFileW(relatorio.c_str());
    return true;
}

void Publicar(std::uint32_t geracao, const std::filesystem::path& relatorio, ResultadoRequisitos resultado) {
    Publicacao& publicado = Publicado();
    const std::lock_guard guarda(publicado.trava);
    const bool atual = publicado.geracao == geracao;
    if (atual || publicado.resultado.concluido) DeleteFileW(relatorio.c_str());
    resultado.concluido = true;
    if (atual) publicado.resultado = std::move(resultado);
}

}  // namespace

std::uint32_t RenovarRequisitos() {
    Publicacao& publicado = Publicado();
    const std::uint32_t geracao = ++publicado.geracao;
    const std::lock_guard guarda(publicado.trava);
    publicado.resultado = {};
    return geracao;
}

void IniciarRequisitos(std::chrono::milliseconds limite) {
    const std::uint32_t geracao = RenovarRequisitos();
    try {
        SoltarThread(RodarRequisitos, geracao, limite);
    } catch (...) {
        Publicar(geracao, CaminhoDoRelatorio(), {});
        throw;
    }
}

void RodarRequisitos(std::uint32_t geracao, std::chrono::milliseconds limite) {
    ResultadoRequisitos resultado;
    const std::filesystem::path relatorio = CaminhoDoRelatorio();
    const std::filesystem::path jogo = ObterConfig().pastaJogo / L"Zu.exe";
    try {
        std::error_code erro;
        if (TomarArquivo(geracao, relatorio) && std::filesystem::is_regular_file(jogo, erro)) {
            PerguntarAoJogo(jogo, relatorio, limite, resultado);
        }
    } catch (const std::exception& falha) {
        // The game may write more than the memory holds.
        LogLinha("Requisitos: {}", TextoDaExcecao(falha));
        resultado = {};
    }
    Publicar(geracao, relatorio, std::move(resultado));
}

SituacaoRequisitos ObterSituacaoRequisitos() {
    Publicacao& publicado = Publicado();
    const std::lock_guard guarda(publicado.trava);
    return publicado.resultado;
}

ResultadoRequisitos ObterRequisitos() {
    Publicacao& publicado = Publicado();
    const std::lock_guard guarda(publicado.trava);
    return publicado.resultado;
}

VereditoRequisitos ObterVeredito(const ResultadoRequisitos& resultado) {
    return JulgarRequisitos(resultado, DeUtf8(resultado.titulo));
}

}  // namespace zu::launcher
