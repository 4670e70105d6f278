// Every call that an update makes on files and on the network fails once, and the client stays whole.

#include <gmock/gmock.h>
#include <process.h>

#include <atomic>
#include <mutex>

#include "core/formato.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"
#include "tools/updater_helper/aplicar_trocas.h"
#include "update/atualizador.h"
#include "update/estado.h"
#include "update/http.h"
#include "update/mutirao.h"
#include "update/trocas.h"
#include "update/verificacao.h"

namespace zu::launcher {
namespace {

using namespace std::chrono_literals;
using namespace teste;
using std::chrono::steady_clock;

// Unless it stands still nobody waits long: a pause, or a wait that nothing ends at once, moves the clocks of its own
// thread forward instead, by at least this many milliseconds. The clocks of other threads stay, so what a thread sees
// of time follows from what it does.
constexpr std::int64_t kParado = -1;
constinit std::atomic<std::int64_t> menorPasso = kParado;
thread_local constinit std::int64_t adiantado = 0;  // ms

// Whether the wait is to be cut short: only a pause that has an end is.
bool Encurtar(DWORD ms) {
    return menorPasso != kParado && ms != 0 && ms != INFINITE;
}

void WINAPI Dormir(DWORD ms) {
    if (!Encurtar(ms)) return ZU_VERDADEIRA(L"kernel32", Sleep)(ms);
    adiantado += std::max<std::int64_t>(ms, menorPasso);
}

DWORD WINAPI EsperarVarios(DWORD quantos, const HANDLE* objetos, BOOL todos, DWORD ms) {
    constexpr DWORD kEspera = 1;  // ms: lets the other threads get on
    const DWORD resposta =
        ZU_VERDADEIRA(L"kernel32", WaitForMultipleObjects)(quantos, objetos, todos, Encurtar(ms) ? kEspera : ms);
    if (resposta == WAIT_TIMEOUT && Encurtar(ms)) adiantado += std::max<std::int64_t>(ms, menorPasso);
    return resposta;
}

DWORD WINAPI EsperarUm(HANDLE objeto, DWORD ms) {
    return EsperarVarios(1, &objeto, FALSE, ms);
}

BOOL WINAPI LerContador(LARGE_INTEGER* contador) {
    LARGE_INTEGER frequencia{};
    QueryPerformanceFrequency(&frequencia);
    const BOOL lido = ZU_VERDADEIRA(L"kernel32", QueryPerformanceCounter)(contador);
    contador->QuadPart += adiantado * frequencia.QuadPart / 1000;
    return lido;
}

// The threads' library counts its waits by these.
ULONGLONG WINAPI LerTiques() {
    return ZU_VERDADEIRA(L"kernel32", GetTickCount64)() + static_cast<ULONGLONG>(adiantado);
}

bool NaRede(const Chamada& chamada) {
    return chamada.nome.starts_with("WinHttp");
}

// A program with this in it starts no other: what would be started counts as started.
BOOL WINAPI NaoCriarProcesso(LPCWSTR, LPWSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD, LPVOID,
                             LPCWSTR pasta, LPSTARTUPINFOW, LPPROCESS_INFORMATION processo) {
    if (Recusada("CreateProcessW", pasta)) return FALSE;
    processo->hProcess = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    processo->hThread = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    return TRUE;
}

// A sixth: a test need not wait half a minute for a server that says nothing.
BOOL WINAPI EncurtarEsperas(HINTERNET sessao, int resolver, int conectar, int enviar, int receber) {
    return ZU_VERDADEIRA(L"winhttp", WinHttpSetTimeouts)(sessao, resolver / 6, conectar / 6, enviar / 6, receber / 6);
}

// A small client with something of everything: one file stays, one is resumed, one is in parts and has nearly all of
// the old one in it, one comes into a new folder, one is marked read-only, one may be held; and two go, one of them
// perhaps held.
class Cliente : public testing::Test {
 protected:
    Cliente() {
        Configurar(pasta_.Caminho(), servidor_.Url(), 1);
        std::string grande = Bytes(60'000);
        Publicacao velha;
        velha.arquivos = {{"igual.txt", "fica"},        {"Data/mapa.map", "mapa velho"},
                          {"Data/grande.pak", grande},  {"leitura.ini", "marcado velho"},
                          {"preso.dll", "preso velho"}, {"Data/sai.dat", "sai"},
                          {"sai preso.dat", "sai"}};
        ++grande[40'000];
        nova_.arquivos = {{"igual.txt", "fica"},       {"Data/mapa.map", "mapa novo, bem maior"},
                          {"Data/grande.pak", grande}, {"leitura.ini", "marcado novo"},
                          {"preso.dll", "preso novo"}, {"Nova/Sub/novo.dat", "novo"}};
        nova_.seq = 2;
        nova_.partes = {{"Data/grande.pak", 2}};
        nova_.blocos = true;
        nova_.remover = {"Data/sai.dat", "sai preso.dat"};
        velha.Servir(servidor_);
        EXPECT_EQ(Rodar(), StatusUpdate::kPronto);
        nova_.Servir(servidor_);
        inicio_ = pasta_.Tudo();
        inicio_["Data/mapa.map.upd"] = "mapa no";
        inicio_["Config/Launcher.estado.tmp"] = "seq";
        inicio_["Data/grande.pak.upd.p001"] = grande.substr(0, 10);
    }

    ~Cliente() override { menorPasso = kParado; }

    // Everything as it was before the update.
    void Voltar() {
        for (const std::string& nome : pasta_.Nomes())
            ApagarArquivo(pasta_ / nome);
        std::filesystem::remove_all(pasta_ / "Nova");
        for (const auto& [nome, conteudo] : inicio_)
            pasta_.Escrever(nome, conteudo);
        for (const char* const marcado : {"leitura.ini", "Data/mapa.map.upd", "Config/Launcher.estado.tmp"})
            SetFileAttributesW((pasta_ / marcado).c_str(), FILE_ATTRIBUTE_READONLY);
    }

    StatusUpdate Rodar() {
        Atualizador atualizador;
        atualizador.Rodar(false);
        trocas_ = atualizador.Trocas();
        return atualizador.Estado().status;
    }

    // The run and all that follows from it, up to the helper's end; nobody holds a file once the launcher has closed.
    // True when it left nothing to do.
    bool Atualizar(bool prender) {
        std::vector<HandleArquivo> presos;
        for (const char* nome : {"preso.dll", "sai preso.dat"})
            if (prender) presos.push_back(pasta_.Prender(nome));
        std::string erro;
        const StatusUpdate status = Rodar();
        const bool entregue = status == StatusUpdate::kReiniciando && IniciarUpdaterHelper(trocas_, erro);
        presos.clear();
        if (!entregue) return status == StatusUpdate::kPronto;
        AplicarTrocas(CaminhoPendente(), {}, [](std::string_view) {});
        return !std::filesystem::exists(CaminhoPendente());
    }

    // At any time each file is the old one or the new one; once a run counts as done, the new one.
    void EsperarInteiro(bool feito) {
        for (const auto& [nome, novo] : nova_.arquivos) {
            const std::string agora = pasta_.Ler(nome);
            const std::string velho = inicio_.contains(nome) ? inicio_[nome] : "(nada)";
            EXPECT_TRUE(agora == novo || (!feito && agora == velho)) << nome << ": " << agora.substr(0, 99);
        }
    }

    // Once a run has met no trouble: the new client and nothing else, the launcher's own two files apart.
    void EsperarNovo() const {
        auto tudo = pasta_.Tudo();
        EXPECT_EQ(tudo["Config/Launcher.estado"], TextoDoEstado(nova_.seq, nova_.versao));
        tudo.erase("Config/Launcher.cache");
        tudo.erase("Config/Launcher.estado");
        EXPECT_EQ(tudo, nova_.arquivos);
    }

    // What `trabalho` returns while `falhar` is asked about each call on the network and on what lies below the folder,
    // the logs apart. And a read-only file is neither written nor moved over, as on Windows.
    bool ComFalhas(const std::function<DWORD(const Chamada&)>& falhar, const std::function<bool()>& trabalho) {
        const std::function<DWORD(const Chamada&)> porta = [&](const Chamada& chamada) -> DWORD {
            const bool daPasta = chamada.caminho.native().starts_with(pasta_.Caminho().native()) &&
                                 chamada.caminho.extension() != L".log";
            if (!daPasta && !NaRede(chamada)) return 0;
            const DWORD erro = falhar(chamada);
            if (erro != 0 || (chamada.destino.empty() && !chamada.escreve)) return erro;
            const DWORD atributos = GetFileAttributesW((chamada.escreve ? chamada.caminho : chamada.destino).c_str());
            return atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_READONLY) != 0
                       ? ERROR_ACCESS_DENIED
                       : 0;
        };
        recusa.porta = &porta;
        const bool feito = trabalho();
        recusa.porta = nullptr;
        return feito;
    }

    PastaTemporaria pasta_{L"Jogo ç"};
    Servidor servidor_;
    Publicacao nova_;
    std::map<std::string, std::string> inicio_;
    std::vector<TrocaPendente> trocas_;
};

// What fails, and whether it is one call or also all later ones: changes that fail for good leave the disk as it is
// when the process is killed there.
struct Caso {
    const char* nome;
    bool rede, consultas;
    DWORD erro;
    bool paraSempre = false;

    [[nodiscard]] bool Conta(const Chamada& chamada) const {
        const bool consulta = chamada.nome == "ReadFile" || chamada.nome == "GetFileAttributesExW";
        return NaRede(chamada) == rede && (consultas || !consulta);
    }
    // Also a part of the name under which ctest remembers how long it took.
    friend void PrintTo(const Caso& caso, std::ostream* saida) { *saida << caso.nome; }
};

class Tortura : public Cliente, public testing::WithParamInterface<Caso> {};

TEST_P(Tortura, CadaChamadaFalhaENadaSeRompe) {
    const Caso& caso = GetParam();
    menorPasso = 1000;
    std::atomic<std::size_t> feitas = 0;
    std::size_t alvo = 0;
    std::string qual;
    const auto falhar = [&](const Chamada& chamada) -> DWORD {
        if (!caso.Conta(chamada)) return 0;
        const std::size_t numero = ++feitas;
        if (numero < alvo || (numero > alvo && !caso.paraSempre)) return 0;
        if (numero == alvo) qual = Formatar("{}: {} {}", alvo, chamada.nome, ParaUtf8(chamada.caminho.native()));
        return caso.erro;
    };
    do {
        ++alvo;
        feitas = 0;
        Voltar();
        const bool feito = ComFalhas(falhar, [this] { return Atualizar(true); });
        SCOPED_TRACE(qual);
        EsperarInteiro(feito);
        EXPECT_TRUE(ComFalhas([](const Chamada&) { return 0; }, [this] { return Atualizar(false); }));
        EsperarNovo();
    } while (feitas >= alvo);
    EXPECT_THAT(LinhasDoLog(pasta_), testing::Contains(testing::HasSubstr("já estavam no disco")));
}

constexpr Caso kCasos[] = {{"arquivo_5", false, true, ERROR_ACCESS_DENIED},
                           {"arquivo_32", false, false, ERROR_SHARING_VIOLATION},
                           {"arquivo_1117", false, false, ERROR_IO_DEVICE},
                           {"morte", false, false, ERROR_IO_DEVICE, true},
                           {"rede", true, true, 12002},
                           {"rede_cai", true, true, 12030, true}};
INSTANTIATE_TEST_SUITE_P(Erros, Tortura, testing::ValuesIn(kCasos),
                         [](const auto& caso) { return std::string(caso.param.nome); });

// Fault: nothing ends the wait for a server that has fallen silent.
TEST_F(Cliente, ServidorCaladoETempoEsgotado) {
    servidor_.Definir("calado", {.corpo = "abc", .anunciado = 9, .fim = teste::Fim::kCalar});
    std::string erro;
    const std::atomic<bool> cancelar = false;
    const auto inicio = steady_clock::now();
    EXPECT_FALSE(HttpBaixarArquivo(DeUtf8(servidor_.Url() + "calado"), pasta_ / "f", 9, {}, cancelar, erro));
    // Windows says 12002 where Wine hands on the socket's own number.
    EXPECT_TRUE(erro == "download: tempo esgotado" || erro == "download: erro 10060") << erro;
    EXPECT_LT(steady_clock::now() - inicio, 20s);
    EXPECT_EQ(pasta_.Ler("f"), "abc");
}

// Whoever looks at a target or at a fresh file for a moment. A file marked read-only, which the system does not
// replace, is among them.
TEST_F(Cliente, MarcaESegurarPorUmMomentoNaoAdiamNada) {
    for (const bool fresco : {false, true}) {
        menorPasso = 0;
        std::mutex trava;
        std::map<std::filesystem::path, steady_clock::time_point> soltura;
        const auto segurar = [&](const Chamada& chamada) -> DWORD {
            const bool abertura = chamada.nome == "CreateFileW";
            if (!abertura && chamada.destino.empty()) return 0;
            const std::lock_guard guarda(trava);
            const auto& arquivo = fresco ? chamada.caminho : chamada.destino;
            if (abertura && !soltura.contains(arquivo)) return 0;
            const auto ate = soltura.try_emplace(arquivo, steady_clock::now() + 300ms).first->second;
            return steady_clock::now() < ate ? ERROR_SHARING_VIOLATION : 0;
        };
        Voltar();
        EXPECT_TRUE(ComFalhas(segurar, [this] { return Rodar() == StatusUpdate::kPronto; }));
        EsperarNovo();
        EXPECT_FALSE(soltura.empty());
    }
}

// Fault: a scanner's look at a helper that has just come ends the hand-over.
TEST_F(Cliente, HelperPresoPorUmMomentoAindaComeca) {
    menorPasso = 0;
    int recusas = 0;
    const auto segurar = [&](const Chamada& chamada) -> DWORD {
        return chamada.nome == "CreateProcessW" && ++recusas < 4 ? ERROR_SHARING_VIOLATION : 0;
    };
    std::string erro;
    EXPECT_TRUE(ComFalhas(segurar, [&] { return IniciarUpdaterHelper({}, erro); })) << erro;
    EXPECT_EQ(recusas, 4);
}

// Faults: log or downloads in the order in which files were read, a file read twice, what differs in size read before
// what may be right, a failure lost or told too early, bytes counted twice or left out, threads for nothing.
TEST(Conferencia, EmVariosThreadsDizOMesmoQueEmUm) {
    using namespace testing;
    const PastaTemporaria pasta;
    Configurar(pasta.Caminho(), "http://s/");
    Publicacao publicacao;
    Atualizador atualizador;
    const std::string grande = Bytes(Mutirao::kGrande + 1);
    publicacao.arquivos = {{"a tamanho", "12"}, {"b grande", grande}, {"c igual", "c"}, {"d mudou", "d"},
                           {"e falta", "e"},    {"f preso", "f"},     {"g igual", ""},  {"h pasta", ""}};
    update::UpdateList lista = publicacao.Lista();
    for (const std::size_t repetido : {2U, 3U, 2U})
        lista.itens.push_back(lista.itens[repetido]);
    lista.itens[8].caminho = "./C IGUAL";
    lista.itens[10].tamanho = 5;
    // Before them more than one thread looks at in a row; nobody speaks of these.
    constexpr std::size_t kOutros = 300;
    lista.itens.insert(lista.itens.begin(), kOutros, {.caminho = "screenshots/a.jpg"});
    publicacao.arquivos["a tamanho"] = "123";
    publicacao.arquivos["d mudou"] = "D";
    for (const auto& [nome, conteudo] : publicacao.arquivos)
        if (nome[0] != 'e') pasta.Escrever(nome[0] == 'h' ? nome + "/dentro" : nome, conteudo);
    HandleArquivo preso = pasta.Prender("f preso", 0);

    bool comThreads = false;
    std::string semMemoria;
    std::atomic<int> threads = 0;
    std::mutex trava;
    std::vector<std::string> lidos;
    const std::function<DWORD(const Chamada&)> porta = [&](const Chamada& chamada) -> DWORD {
        if (chamada.nome == "_beginthreadex") return ++threads, comThreads ? 0 : EAGAIN;
        const std::string nome = chamada.caminho.filename().string();
        if (chamada.nome != "CreateFileW" || nome.find(' ') != 1) return 0;
        const std::lock_guard guarda(trava);
        lidos.push_back(nome);
        return nome == semMemoria ? throw std::bad_alloc() : 0;
    };
    std::vector<std::size_t> indices;
    const auto conferir = [&](bool reparar) {
        lidos.clear();
        indices.clear();
        std::filesystem::remove(pasta / "ZuLauncher.log");
        recusa.porta = &porta;
        try {
            VerificarArquivos(atualizador, lista, reparar, indices);
        } catch (const std::bad_alloc&) {
            indices.push_back(999);
        }
        recusa.porta = nullptr;
        return LinhasDoLog(pasta);
    };
    for (const bool varios : {false, true}) {
        comThreads = varios;
        EXPECT_THAT(conferir(true), ElementsAre(_, "[update] a tamanho: diferente", "[update] d mudou: diferente",
                                                "[update] e falta: faltando", "[update] f preso: diferente",
                                                "[update] h pasta: faltando", "[update] c igual: diferente"));
        EXPECT_THAT(indices, ElementsAre(300, 303, 304, 305, 307, 310));
        const EstadoAtualizacao estado = atualizador.Estado();
        EXPECT_TRUE(estado.bytesFeitos == estado.bytesTotal && estado.arquivosFeitos == lista.itens.size());
        EXPECT_THAT(LerCache(), SizeIs(5));
        EXPECT_TRUE(varios || lidos.back() == "a tamanho");
        EXPECT_THAT(lidos, UnorderedElementsAre("a tamanho", "b grande", "c igual", "d mudou", "f preso", "g igual"));
        semMemoria = "d mudou";
        EXPECT_THAT(conferir(true), ElementsAre(_, "[update] a tamanho: diferente"));
        EXPECT_THAT(indices, ElementsAre(300, 999));
        semMemoria.clear();
    }
    preso.Fechar();
    EXPECT_THAT(conferir(false), SizeIs(6));
    EXPECT_THAT(lidos, ElementsAre("f preso"));
    lista.itens.erase(lista.itens.begin(), lista.itens.begin() + kOutros);
    threads = 0;
    EXPECT_THAT(conferir(false), SizeIs(6));
    EXPECT_TRUE(lidos.empty() && threads == 0);
}

}  // namespace
}  // namespace zu::launcher

ZU_DESVIAR(CreateProcessW, &zu::launcher::NaoCriarProcesso);
ZU_DESVIAR(GetTickCount64, &zu::launcher::LerTiques);
ZU_DESVIAR(QueryPerformanceCounter, &zu::launcher::LerContador);
ZU_DESVIAR(Sleep, &zu::launcher::Dormir);
ZU_DESVIAR(WaitForMultipleObjects, &zu::launcher::EsperarVarios);
ZU_DESVIAR(WaitForSingleObject, &zu::launcher::EsperarUm);
ZU_DESVIAR(WinHttpSetTimeouts, &zu::launcher::EncurtarEsperas);
ZU_RECUSAVEL(L"kernel32", CreateDirectoryW, FALSE);
ZU_RECUSAVEL(L"kernel32", CreateFileW, INVALID_HANDLE_VALUE);
ZU_RECUSAVEL(L"kernel32", DeleteFileW, FALSE);
ZU_RECUSAVEL(L"kernel32", FlushFileBuffers, FALSE);
ZU_RECUSAVEL(L"kernel32", GetDiskFreeSpaceExW, FALSE);
ZU_RECUSAVEL(L"kernel32", GetFileAttributesExW, FALSE);
ZU_RECUSAVEL(L"kernel32", MoveFileExW, FALSE);
ZU_RECUSAVEL(L"kernel32", ReadFile, FALSE);
ZU_RECUSAVEL(L"kernel32", SetEndOfFile, FALSE);
ZU_RECUSAVEL(L"kernel32", SetFileAttributesW, FALSE);
ZU_RECUSAVEL(L"kernel32", WriteFile, FALSE);
ZU_RECUSAVEL(L"msvcrt", _beginthreadex, 0);
ZU_RECUSAVEL(L"winhttp", WinHttpConnect, nullptr);
ZU_RECUSAVEL(L"winhttp", WinHttpCrackUrl, FALSE);
ZU_RECUSAVEL(L"winhttp", WinHttpOpenRequest, nullptr);
ZU_RECUSAVEL(L"winhttp", WinHttpQueryDataAvailable, FALSE);
ZU_RECUSAVEL(L"winhttp", WinHttpQueryHeaders, FALSE);
ZU_RECUSAVEL(L"winhttp", WinHttpReadData, FALSE);
ZU_RECUSAVEL(L"winhttp", WinHttpReceiveResponse, FALSE);
ZU_RECUSAVEL(L"winhttp", WinHttpSendRequest, FALSE);
