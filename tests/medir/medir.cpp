// The measurements of ./medir that need the program's own code. Each command prints "name TAB value" lines; ./medir
// prepares the folders and servers, runs the commands as processes of their own and makes the table.

#include <windows.h>
// after windows.h
#include <psapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>
#include <numeric>

#include "app/instancia_unica.h"
#include "core/json.h"
#include "core/pasta.h"
#include "tests/suporte/oficina.h"
#include "tests/suporte/processo.h"
#include "tests/suporte/publicacao.h"
#include "tests/suporte/recusa.h"
#include "tools/forjal/paralelo.h"
#include "ui/controles/face_guardada.h"
#include "ui/janelas/pintor_principal.h"
#include "update/agendador.h"
#include "update/atualizador.h"
#include "update/blocos.h"
#include "update/blocos_busca.h"
#include "update/hash_arquivo.h"
#include "update/http.h"
#include "update/url.h"

namespace {

bool contando = false;  // it takes time
std::atomic<std::int64_t> emUso = 0;
std::atomic<std::int64_t> maisEmUso = 0;

// How many milliseconds a flush takes; -1: as many as the disk needs.
std::atomic<int> descarga = -1;

BOOL WINAPI Descarregar(HANDLE arquivo) {
    if (descarga < 0) return ZU_VERDADEIRA(L"kernel32", FlushFileBuffers)(arquivo);
    if (descarga > 0) Sleep(static_cast<DWORD>(descarga));
    return TRUE;
}

void Contar(std::int64_t bytes) {
    const std::int64_t agora = emUso += bytes;
    for (std::int64_t antes = maisEmUso; antes < agora && !maisEmUso.compare_exchange_weak(antes, agora);) {
    }
}

}  // namespace

// Counts what the program holds, block by block.
void* operator new(std::size_t tamanho) {
    void* const bloco = std::malloc(tamanho);
    if (bloco == nullptr) throw std::bad_alloc();
    if (contando) Contar(static_cast<std::int64_t>(_msize(bloco)));
    return bloco;
}
void operator delete(void* bloco) noexcept {
    if (contando && bloco != nullptr) Contar(-static_cast<std::int64_t>(_msize(bloco)));
    std::free(bloco);
}
void operator delete(void* bloco, std::size_t) noexcept {
    operator delete(bloco);
}

namespace zu::launcher {
namespace {

constexpr int kVoltas = 3;      // at least
constexpr double kDuracao = 1;  // seconds that the turns of a short work add up to, at least
using Trabalho = std::function<void()>;

double Cronometrar(const Trabalho& trabalho) {
    const auto inicio = std::chrono::steady_clock::now();
    trabalho();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - inicio).count();
}

void Imprimir(const char* nome, double valor) {
    std::printf("%s\t%.9g\n", nome, valor);
}

// Seconds of the quickest of some turns: what the machine does beside us only ever adds. In turns with what it is
// measured against, so that a change in the machine's speed meets both. Both do their work `quantos` times over;
// `depois` follows each, outside of the time.
void Medir(
    const Trabalho& nosso, const Trabalho& base = {}, int quantos = 1, const Trabalho& depois = [] {}) {
    double melhorBase = std::numeric_limits<double>::max();
    double melhor = melhorBase;
    double total = 0;
    for (int i = 0; i < kVoltas || total < kDuracao; ++i) {
        if (base) melhorBase = std::min(melhorBase, Cronometrar(base));
        depois();
        const double agora = Cronometrar(nosso);
        depois();
        melhor = std::min(melhor, agora);
        total += agora;
    }
    if (base) Imprimir("base", melhorBase / quantos);
    Imprimir("nosso", melhor / quantos);
}

// What the process took at its most. Where blocks are counted: what the program held at its most, of what it made
// since; what the system tells of a process is not what it holds under Wine.
void ImprimirMemoria() {
    PROCESS_MEMORY_COUNTERS contadores{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &contadores, sizeof contadores);
    Imprimir("memoria", contando ? static_cast<double>(maisEmUso) : static_cast<double>(contadores.PeakPagefileUsage));
}

[[noreturn]] void Falhar(const std::string& motivo) {
    std::fprintf(stderr, "%s\n", motivo.c_str());
    std::exit(1);
}

void RodarAte(StatusUpdate esperado, bool reparar = false) {
    Atualizador atualizador;
    atualizador.Rodar(reparar);
    if (atualizador.Estado().status != esperado) Falhar(atualizador.Estado().texto);
}

// The file in order, in pieces of any length.
bool LerPedaco(HANDLE arquivo, std::span<std::uint8_t> bytes, std::size_t& lidos) {
    DWORD agora = 0;
    const bool leu = ReadFile(arquivo, bytes.data(), static_cast<DWORD>(bytes.size()), &agora, nullptr) != 0;
    lidos = agora;
    return leu;
}

// The whole file, in blocks, by nothing but the system's calls.
void LerCru(const std::filesystem::path& arquivo, const std::function<void(const void*, std::size_t)>& alimentar) {
    thread_local std::vector<std::uint8_t> bloco(1024 * 1024);
    const HandleArquivo leitura = AbrirParaHash(arquivo);
    for (std::size_t lidos = 1; lidos != 0; alimentar(bloco.data(), lidos))
        if (!LerPedaco(leitura.Valor(), bloco, lidos)) Falhar("leitura");
}

void SomarTudo(const std::filesystem::path& arquivo) {
    if (!HashArquivo(arquivo, 0).ok) Falhar("hash");
}

// hash ARQUIVO: the read loop with SHA-256 alone, and with CRC-32 beside it
void MedirHash(const std::filesystem::path& arquivo) {
    const auto soSha = [&] {
        Sha256Incremental contexto = Sha256Begin();
        LerCru(arquivo, [&](const void* bloco, std::size_t bytes) { Sha256Feed(contexto, bloco, bytes); });
        Sha256Digest digest{};
        Sha256Finish(contexto, digest);
    };
    soSha();  // the file is in the page cache from here on
    Medir([&] { SomarTudo(arquivo); }, soSha);
}

std::string Texto(const std::filesystem::path& arquivo) {
    std::string texto;
    if (!LerArquivoInteiro(arquivo, texto)) Falhar(ParaUtf8(arquivo.native()));
    return texto;
}

// Lines and fields told apart, every byte looked at.
std::size_t SepararCru(std::string_view texto) {
    std::size_t soma = 0;
    for (const char c : texto)
        soma += c == '\n' ? 1'000'000 : c == '\t' ? 1'000 : static_cast<unsigned char>(c);
    return soma;
}

// Whether a text is UTF-8 (RFC 3629, section 4), by a table of states: one step a byte, whatever the byte. State 0 is
// an error and stays one, 1 is between two characters; 2 to 4 wait for one to three more bytes, the others know the
// second byte's limits.
std::size_t ValidarCru(std::string_view texto) {
    constexpr std::uint8_t kValidos[][4] = {
        {1, 0x00, 0x7F, 1}, {1, 0xC2, 0xDF, 2}, {1, 0xE1, 0xEF, 3}, {1, 0xF1, 0xF3, 4}, {1, 0xE0, 0xE0, 5},
        {1, 0xED, 0xED, 6}, {1, 0xF0, 0xF0, 7}, {1, 0xF4, 0xF4, 8}, {2, 0x80, 0xBF, 1}, {3, 0x80, 0xBF, 2},
        {4, 0x80, 0xBF, 3}, {5, 0xA0, 0xBF, 2}, {6, 0x80, 0x9F, 2}, {7, 0x90, 0xBF, 3}, {8, 0x80, 0x8F, 3}};
    static const auto kPassos = [&] {
        std::array<std::array<std::uint8_t, 256>, 9> passos{};
        for (const auto& [estado, de, ate, proximo] : kValidos)
            std::fill_n(passos[estado].begin() + de, ate - de + 1, proximo);
        return passos;
    }();
    std::uint8_t estado = 1;
    for (const char c : texto)
        estado = kPassos[estado][static_cast<unsigned char>(c)];
    return estado == 1 ? 1 : 0;
}

// lista ARQUIVO, json ARQUIVO: reading a document, beside a bare pass over it, and the memory that what was read takes
template <class Lido, class Ler>
void MedirLeitura(const std::filesystem::path& arquivo, const Ler& ler, std::size_t passar(std::string_view)) {
    std::string texto = Texto(arquivo);
    Lido lido;
    const auto nosso = [&] {
        std::string erro;
        if (!ler(texto, lido, erro)) Falhar(erro);
    };
    const auto base = [&] {
        if (passar(texto) == 0) Falhar("texto");
    };
    // Giving the memory back is not reading.
    Medir(nosso, base, 1, [&] { lido = {}; });
    contando = true;
    nosso();
    Imprimir("texto", static_cast<double>(texto.size()));
}

bool LerEDevolver(std::string& texto, update::UpdateList& lista, std::string& erro) {
    const bool lida = update::LerLista(std::move(texto), lista, erro);
    texto = std::move(lista.textos->front());
    return lida;
}

// Every file below, by the system's bare answers.
void Passear(const std::filesystem::path& pasta, const std::function<void(const std::filesystem::path&)>& visitar) {
    ListarPasta(pasta, [&](const WIN32_FIND_DATAW& achado) {
        const std::filesystem::path caminho = pasta / achado.cFileName;
        (achado.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Passear(caminho, visitar) : visitar(caminho);
    });
}

std::vector<std::filesystem::path> Arquivos(const std::filesystem::path& pasta) {
    std::vector<std::filesystem::path> arquivos;
    Passear(pasta, [&](const std::filesystem::path& caminho) { arquivos.push_back(caminho); });
    return arquivos;
}

// conferir PASTA URL: a run that finds nothing to do, and the bare question about each file's attributes
void MedirConferir(const std::filesystem::path& pasta, const std::string& url) {
    teste::Configurar(pasta, url);
    const std::vector<std::filesystem::path> arquivos = Arquivos(pasta);
    RodarAte(StatusUpdate::kPronto);  // fills the cache
    Medir([] { RodarAte(StatusUpdate::kPronto); },
          [&] {
              WIN32_FILE_ATTRIBUTE_DATA dados{};
              for (const std::filesystem::path& arquivo : arquivos)
                  GetFileAttributesExW(arquivo.c_str(), GetFileExInfoStandard, &dados);
          });
}

// What a scanner's first look at a file costs, in every opening of a file that is to be read from front to back.
constinit DWORD demoraAoAbrir = 0;  // ms

HANDLE WINAPI AbrirComDemora(LPCWSTR nome, DWORD acesso, DWORD partilha, LPSECURITY_ATTRIBUTES seguranca,
                             DWORD disposicao, DWORD marcas, HANDLE modelo) {
    static const auto verdadeira = ZU_VERDADEIRA(L"kernel32", CreateFileW);
    if (demoraAoAbrir != 0 && (marcas & FILE_FLAG_SEQUENTIAL_SCAN) != 0) Sleep(demoraAoAbrir);
    return verdadeira(nome, acesso, partilha, seguranca, disposicao, marcas, modelo);
}

// Each file read and its two digests made, and nothing else, from that many threads (0: one a core).
void SomarCru(const std::vector<std::filesystem::path>& arquivos, std::size_t threads) {
    const auto somar = [&](std::size_t i) {
        HashCorrente hash;
        LerCru(arquivos[i], std::bind_front(&HashCorrente::Alimentar, &hash));
        hash.Terminar(true);
    };
    forjal::EmParalelo(
        std::vector<std::uint64_t>(arquivos.size()), somar, [] {}, threads);
}

// reparo PASTA URL DEMORA: a run that reads every file and finds nothing to do, and the bare reading from as many
// threads: one a core, or eight when each opening takes some milliseconds
void MedirReparo(const std::filesystem::path& pasta, const std::string& url, DWORD demora) {
    teste::Configurar(pasta, url);
    const std::vector<std::filesystem::path> arquivos = Arquivos(pasta);
    demoraAoAbrir = demora;
    Medir([] { RodarAte(StatusUpdate::kPronto, true); }, [&] { SomarCru(arquivos, demora == 0 ? 0 : 8); });
}

void RodarForjal(const std::vector<std::wstring>& argumentos) {
    forjal::SaidaDeTeste saida;
    if (forjal::RodarForjal(argumentos, saida) != forjal::kFeito) Falhar(saida.erros);
}

// Of a first publication there is no date to trust.
void PublicarPasta(const std::filesystem::path& cliente, const std::filesystem::path& saida, int seq) {
    RodarForjal({L"publicar", L"--cliente=" + cliente.native(), L"--saida=" + saida.native(),
                 L"--chave=" + (std::filesystem::path(ZU_PASTA_CHAVES) / L"lista.chave").make_preferred().native(),
                 L"--seq=" + std::to_wstring(seq), L"--confiar-na-data"});
}

// primeira CLIENTE SAIDA: a first publication; and reading and hashing on all cores, then copying, down to the disk:
// what a copy leaves in memory would be written during whatever is measured next
void MedirPrimeira(const std::filesystem::path& cliente, const std::filesystem::path& saida) {
    const std::vector<std::filesystem::path> arquivos = Arquivos(cliente);
    const auto crua = [&] {
        const std::vector<std::uint64_t> tamanhos(arquivos.size());
        forjal::EmParalelo(
            tamanhos, [&](std::size_t i) { HashArquivo(arquivos[i], 0); }, [] {});
        CreateDirectoryW(saida.c_str(), nullptr);
        for (std::size_t i = 0; i < arquivos.size(); ++i) {
            const std::filesystem::path copia = saida / std::to_wstring(i);
            CopyFileW(arquivos[i].c_str(), copia.c_str(), TRUE);
            DescarregarArquivo(copia);
        }
    };
    Medir([&] { PublicarPasta(cliente, saida, 1); }, crua, 1, [&] { std::filesystem::remove_all(saida); });
}

// denovo CLIENTE SAIDA: a publication that finds nothing changed; and a bare walk with attributes
void MedirDeNovo(const std::filesystem::path& cliente, const std::filesystem::path& saida) {
    contando = true;
    int seq = 2;
    Medir([&] { PublicarPasta(cliente, saida, seq++); },
          [&] {
              Passear(cliente, [](const std::filesystem::path& caminho) {
                  InfoArquivo info;
                  LerInfoArquivo(caminho, info);
              });
          });
}

// A bare WinHTTP read loop into a file, in blocks of the size that a run asks for, down to the disk as a run's are.
void BaixarCru(const std::wstring& url, const std::filesystem::path& destino) {
    HttpRequest troca;
    std::uint32_t status = 0;
    std::string erro;
    if (!HttpAbrir(url, L"", troca, status, erro) || status != 200) Falhar("cru: " + erro);
    const HandleArquivo saida(CreateFileW(destino.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    constexpr DWORD kBloco = 256 * 1024;
    const auto bloco = std::make_unique_for_overwrite<char[]>(kBloco);
    for (DWORD lidos = 1; lidos != 0;) {
        DWORD escritos = 0;
        if (WinHttpReadData(troca.requisicao.Valor(), bloco.get(), kBloco, &lidos) == 0) Falhar("cru: leitura");
        WriteFile(saida.Valor(), bloco.get(), lidos, &escritos, nullptr);
    }
    FlushFileBuffers(saida.Valor());
}

// grande PASTA URL CAMINHO: one large file by the bare loop and by a run
void MedirGrande(const std::filesystem::path& pasta, const std::string& url, const std::string& caminho) {
    teste::Configurar(pasta, url);
    const std::filesystem::path alvo = pasta / DeUtf8(caminho);
    Medir(
        [&] {
            DeleteFileW(alvo.c_str());
            RodarAte(StatusUpdate::kPronto);
        },
        [&] { BaixarCru(DeUtf8(url + caminho), pasta / L"cru.bin"); });
}

// descargas PASTA URL MS: one run over one connection into an empty folder where each flush takes that long, and where
// none takes any time
void MedirDescargas(const std::filesystem::path& pasta, const std::string& url, int ms) {
    teste::Configurar(pasta, url, 1);
    const auto rodar = [](int quanto) {
        descarga = quanto;
        RodarAte(StatusUpdate::kPronto);
    };
    Medir([&] { rodar(ms); }, [&] { rodar(0); }, 1,
          [&] {
              for (const auto& entrada : std::filesystem::directory_iterator(pasta))
                  std::filesystem::remove_all(entrada);
          });
}

// baixar PASTA URL CONEXOES: one run into an empty folder
void MedirBaixar(const std::filesystem::path& pasta, const std::string& url, int conexoes) {
    teste::Configurar(pasta, url, conexoes);
    Imprimir("nosso", Cronometrar([] { RodarAte(StatusUpdate::kPronto); }));
}

// busca VELHO INDICE: the search for the blocks of the index, and CRC-32 and SHA-256 of the same file
void MedirBusca(const std::filesystem::path& velho, const std::filesystem::path& arquivoDoIndice) {
    update::IndiceDeBlocos indice;
    if (!update::LerIndice(Texto(arquivoDoIndice), indice)) Falhar("indice");
    const auto buscar = [&] {
        const HandleArquivo leitura = AbrirParaHash(velho);
        std::vector<std::uint64_t> onde;
        if (!update::BuscarBlocos(indice, std::bind_front(LerPedaco, leitura.Valor()), onde)) Falhar("busca");
    };
    Medir(buscar, [&] { SomarTudo(velho); });
}

// tentar PASTA URL LISTA: all files of the list over 16 connections, whether they come or not
void MedirTentativa(const std::filesystem::path& pasta, const std::string& url, const std::filesystem::path& arquivo) {
    contando = true;
    teste::Configurar(pasta, url, 16);
    update::UpdateList lista;
    std::string erro;
    if (!update::LerLista(Texto(arquivo), lista, erro)) Falhar(erro);
    std::vector<std::size_t> indices(lista.itens.size());
    std::iota(indices.begin(), indices.end(), 0);
    Atualizador atualizador;
    atualizador.Blocos().Usar(lista);
    BaixarTodos(atualizador, lista, indices);
}

// One whole repaint of the main window and of its controls, into memory as on the screen; and the same without the
// pictures that are kept.
void MedirPintura() {
    constexpr int kRepinturas = 200;
    IniciarDesenho();
    const Fontes fontes = CriarFontes();
    PinturaDaPrincipal pintura(LogoEncaixado({440, 310, std::vector<std::uint32_t>(440 * 310, 0xFF804020U)}));
    const EstadoControle botao;
    std::array<FaceGuardada, 4> faces;
    const AparenciaPrincipal aparencia{L"Zu", true, CaixaDaTira::kNenhuma, CentroDaPrincipal::kLogo, 40, 60};
    const HandleDc tela(CreateCompatibleDC(nullptr));
    const HDC janela = GetDC(nullptr);
    const auto repintar = [&](bool guardadas) {
        for (int i = 0; i < kRepinturas; ++i) {
            const HandleGdi bitmap(CreateCompatibleBitmap(janela, kLarguraPrincipal, kAlturaPrincipal));
            const Selecao selecao(tela.Valor(), bitmap.Valor());
            guardadas ? pintura.Pintar(tela.Valor(), aparencia, fontes)
                      : pintura.PintarTudo(tela.Valor(), aparencia, fontes);
            for (FaceGuardada& face : faces) {
                const RECT r{0, 0, 76, 28};
                const AparenciaControle a{botao, L"Conectar", true};
                guardadas ? face.Mostrar(tela.Valor(), r, a, fontes) : PintarControle(tela.Valor(), r, a, fontes);
            }
            BitBlt(janela, 0, 0, kLarguraPrincipal, kAlturaPrincipal, tela.Valor(), 0, 0, SRCCOPY);
            GdiFlush();
        }
    };
    Medir([&] { repintar(true); }, [&] { repintar(false); }, kRepinturas);
    ReleaseDC(nullptr, janela);
}

// From the start of the process to its window on the screen.
void MedirJanela(const std::filesystem::path& launcher, const std::filesystem::path& pasta) {
    std::optional<teste::Programa> programa;
    HWND janela = nullptr;
    const auto abrir = [&] {
        programa.emplace(launcher, std::vector<std::wstring>{L"--cliente=" + pasta.native()});
        while ((janela = FindWindowW(kClasseDaJanela, nullptr)) == nullptr || !IsWindowVisible(janela))
            Sleep(1);
    };
    Medir(abrir, {}, 1, [&] {
        PostMessageW(janela, WM_CLOSE, 0, 0);
        if (programa) programa->Esperar(10'000);
    });
}

// Ranged requests of one byte over that many connections, with nothing but WinHTTP.
void PedirFaixasCruas(const std::string& url, std::span<const std::wstring> objetos, std::size_t conexoes) {
    const auto porta = static_cast<INTERNET_PORT>(std::stoi(url.substr(url.rfind(':') + 1)));
    const HandleHttp sessao(
        WinHttpOpen(L"cru", WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY, WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0));
    const HandleHttp conexao(WinHttpConnect(sessao.Valor(), L"127.0.0.1", porta, 0));
    const auto pedir = [&](std::size_t i) {
        const HandleHttp pedido(WinHttpOpenRequest(conexao.Valor(), L"GET", objetos[i].c_str(), nullptr,
                                                   WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, 0));
        char bytes[16];
        DWORD lidos = 1;
        if (WinHttpSendRequest(pedido.Valor(), L"Range: bytes=0-0\r\n", static_cast<DWORD>(-1), WINHTTP_NO_REQUEST_DATA,
                               0, 0, 0) == 0 ||
            WinHttpReceiveResponse(pedido.Valor(), nullptr) == 0) {
            Falhar("cru: pedido");
        }
        while (lidos != 0 && WinHttpReadData(pedido.Valor(), bytes, sizeof bytes, &lidos) != 0) {
        }
    };
    forjal::EmParalelo(
        std::vector<std::uint64_t>(objetos.size()), pedir, [] {}, conexoes);
}

// noar URL PASTA CHAVE: "Forjal conferir --url=" of what the folder publishes, and the bare requests for as many files
void MedirNoAr(const std::string& url, const std::filesystem::path& publicada, const std::filesystem::path& publica) {
    std::vector<std::wstring> objetos;
    const std::string pasta = url.substr(url.find('/', std::string_view("http://").size()));
    for (const auto& arquivo : Arquivos(publicada))
        objetos.push_back(DeUtf8(MontarUrl(pasta, ParaUtf8(arquivo.lexically_relative(publicada).generic_wstring()))));
    const std::vector<std::wstring> comando{L"conferir", DeUtf8("--url=" + url), L"--pub=" + publica.native()};
    Medir([&] { RodarForjal(comando); }, [&] { PedirFaixasCruas(url, objetos, 16); });
    Imprimir("pedidos", static_cast<double>(objetos.size()));
}

// The first is the command itself.
using Argumentos = std::vector<std::filesystem::path>;

// With how many arguments each comes.
const std::tuple<const char*, std::size_t, void (*)(const Argumentos&)> kComandos[] = {
    {"hash", 1, [](const Argumentos& a) { MedirHash(a[1]); }},
    {"lista", 1, [](const Argumentos& a) { MedirLeitura<update::UpdateList>(a[1], LerEDevolver, SepararCru); }},
    {"json", 1, [](const Argumentos& a) { MedirLeitura<ValorJson>(a[1], LerJson, ValidarCru); }},
    {"conferir", 2, [](const Argumentos& a) { MedirConferir(a[1], a[2].string()); }},
    {"reparo", 3, [](const Argumentos& a) { MedirReparo(a[1], a[2].string(), std::stoul(a[3].native())); }},
    {"primeira", 2, [](const Argumentos& a) { MedirPrimeira(a[1], a[2]); }},
    {"denovo", 2, [](const Argumentos& a) { MedirDeNovo(a[1], a[2]); }},
    {"noar", 3, [](const Argumentos& a) { MedirNoAr(a[1].string(), a[2], a[3]); }},
    {"grande", 3, [](const Argumentos& a) { MedirGrande(a[1], a[2].string(), a[3].string()); }},
    {"descargas", 3, [](const Argumentos& a) { MedirDescargas(a[1], a[2].string(), std::stoi(a[3].native())); }},
    {"baixar", 3, [](const Argumentos& a) { MedirBaixar(a[1], a[2].string(), std::stoi(a[3].native())); }},
    {"busca", 2, [](const Argumentos& a) { MedirBusca(a[1], a[2]); }},
    {"tentar", 3, [](const Argumentos& a) { MedirTentativa(a[1], a[2].string(), a[3]); }},
    {"janela", 2, [](const Argumentos& a) { MedirJanela(a[1], a[2]); }},
    {"minimizar", 0,
     [](const Argumentos&) { PostMessageW(FindWindowW(kClasseDaJanela, nullptr), WM_SYSCOMMAND, SC_MINIMIZE, 0); }},
    {"pintura", 0, [](const Argumentos&) { MedirPintura(); }},
    // a list, with the development key
    {"assinar", 2, [](const Argumentos& a) { GravarArquivoAtomico(a[2], teste::Assinar(Texto(a[1]))); }},
};

}  // namespace
}  // namespace zu::launcher

ZU_DESVIAR(CreateFileW, &zu::launcher::AbrirComDemora);
ZU_DESVIAR(FlushFileBuffers, &Descarregar);

int wmain(int quantos, wchar_t** argumentos) {
    const zu::launcher::Argumentos todos(argumentos + 1, argumentos + quantos);
    for (const auto& [nome, numero, rodar] : zu::launcher::kComandos) {
        if (todos.size() != numero + 1 || todos[0] != nome) continue;
        rodar(todos);
        zu::launcher::ImprimirMemoria();
        return 0;
    }
    zu::launcher::Falhar("comando desconhecido");
}
