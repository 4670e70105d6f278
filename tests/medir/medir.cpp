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

#include "app/instancia_unica.h"
#include "core/formato.h"
#include "core/json.h"
#include "core/pasta.h"
#include "core/processo.h"
#include "core/texto.h"
#include "tests/suporte/publicacao.h"
#include "tools/forjal/forjal.h"
#include "tools/forjal/paralelo.h"
#include "tools/updater_helper/argumentos.h"
#include "ui/pintor_controle.h"
#include "ui/pintor_principal.h"
#include "update/atualizador.h"
#include "update/estado.h"
#include "update/hash_arquivo.h"
#include "update/http.h"

namespace {

std::atomic<std::int64_t> emUso = 0;
std::atomic<std::int64_t> maisEmUso = 0;

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
    Contar(static_cast<std::int64_t>(_msize(bloco)));
    return bloco;
}
void operator delete(void* bloco) noexcept {
    if (bloco != nullptr) Contar(-static_cast<std::int64_t>(_msize(bloco)));
    std::free(bloco);
}
void operator delete(void* bloco, std::size_t) noexcept {
    operator delete(bloco);
}

namespace zu::launcher {
namespace {

constexpr int kVoltas = 3;

// Seconds of the quickest of some turns: what the machine does beside us only ever adds.
double Cronometrar(const std::function<void()>& trabalho, int voltas = kVoltas) {
    double melhor = std::numeric_limits<double>::max();
    for (int i = 0; i < voltas; ++i) {
        const auto inicio = std::chrono::steady_clock::now();
        trabalho();
        const std::chrono::duration<double> passado = std::chrono::steady_clock::now() - inicio;
        melhor = std::min(melhor, passado.count());
    }
    return melhor;
}

void Imprimir(const char* nome, double valor) {
    std::printf("%s\t%.9g\n", nome, valor);
}

void ImprimirMemoria() {
    PROCESS_MEMORY_COUNTERS contadores{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &contadores, sizeof contadores);
    Imprimir("memoria", static_cast<double>(contadores.PeakPagefileUsage));
}

[[noreturn]] void Falhar(const std::string& motivo) {
    std::fprintf(stderr, "%s\n", motivo.c_str());
    std::exit(1);
}

void RodarAte(StatusUpdate esperado) {
    Atualizador atualizador;
    atualizador.Rodar(false);
    if (atualizador.Estado().status != esperado) Falhar(atualizador.Estado().texto);
}

// hash ARQUIVO: the read loop with SHA-256 alone, and with CRC-32 beside it
void MedirHash(const std::filesystem::path& arquivo) {
    const auto soSha = [&] {
        const HandleArquivo leitura(CreateFileW(arquivo.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                                FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
        constexpr DWORD kBloco = 1024 * 1024;
        const auto bloco = std::make_unique_for_overwrite<std::uint8_t[]>(kBloco);
        Sha256Incremental contexto = Sha256Begin();
        for (DWORD lidos = 1; lidos != 0;) {
            if (ReadFile(leitura.Valor(), bloco.get(), kBloco, &lidos, nullptr) == 0) Falhar("leitura");
            Sha256Feed(contexto, bloco.get(), lidos);
        }
        Sha256Digest digest{};
        Sha256Finish(contexto, digest);
    };
    const auto osDois = [&] {
        if (!HashArquivo(arquivo, 0).ok) Falhar("hash");
    };
    soSha();  // the file is in the page cache from here on
    // In turns, so that a change in the machine's speed meets both.
    double base = std::numeric_limits<double>::max();
    double nosso = base;
    for (int i = 0; i < kVoltas; ++i) {
        base = std::min(base, Cronometrar(soSha, 1));
        nosso = std::min(nosso, Cronometrar(osDois, 1));
    }
    Imprimir("base", base);
    Imprimir("nosso", nosso);
}

// lista ARQUIVO: reading a list, and the memory that it takes
void MedirLista(const std::filesystem::path& arquivo) {
    std::string texto;
    if (!LerArquivoInteiro(arquivo, texto)) Falhar("lista");
    const update::ListaSeparada separada = update::SepararAssinatura(texto);
    const std::int64_t antes = emUso;
    maisEmUso = antes;
    Imprimir("nosso", Cronometrar([&] {
                 update::UpdateList lista;
                 std::string erro;
                 if (!update::LerLista(separada.assinados, lista, erro)) Falhar(erro);
             }));
    Imprimir("texto", static_cast<double>(separada.assinados.size()));
    Imprimir("memoria", static_cast<double>(maisEmUso - antes));
}

// json ARQUIVO: reading a document, and the memory that its tree takes
void MedirJson(const std::filesystem::path& arquivo) {
    std::string texto;
    if (!LerArquivoInteiro(arquivo, texto)) Falhar("json");
    const std::int64_t antes = emUso;
    maisEmUso = antes;
    Imprimir("nosso", Cronometrar([&] {
                 ValorJson valor;
                 std::string erro;
                 if (!LerJson(texto, valor, erro)) Falhar(erro);
             }));
    Imprimir("texto", static_cast<double>(texto.size()));
    Imprimir("memoria", static_cast<double>(maisEmUso - antes));
}

// conferir PASTA URL LISTA: a run that finds nothing to do, and the bare question about each file's attributes
void MedirConferir(const std::filesystem::path& pasta, const std::string& url,
                   const std::filesystem::path& listaLocal) {
    teste::Configurar(pasta, url);
    RodarAte(StatusUpdate::kPronto);  // fills the cache
    std::vector<std::wstring> caminhos;
    {
        std::string texto;
        std::string erro;
        update::UpdateList lista;
        if (!LerArquivoInteiro(listaLocal, texto) ||
            !update::LerLista(update::SepararAssinatura(texto).assinados, lista, erro)) {
            Falhar("lista " + erro);
        }
        for (const auto& item : lista.itens)
            caminhos.push_back((pasta / DeUtf8(item.caminho)).make_preferred());
    }
    double base = std::numeric_limits<double>::max();
    double nosso = base;
    for (int i = 0; i < kVoltas; ++i) {
        base = std::min(base, Cronometrar(
                                  [&] {
                                      WIN32_FILE_ATTRIBUTE_DATA dados{};
                                      for (const std::wstring& caminho : caminhos) {
                                          GetFileAttributesExW(caminho.c_str(), GetFileExInfoStandard, &dados);
                                      }
                                  },
                                  1));
        nosso = std::min(nosso, Cronometrar([] { RodarAte(StatusUpdate::kPronto); }, 1));
    }
    Imprimir("base", base);
    Imprimir("nosso", nosso);
    ImprimirMemoria();
}

// Forjal as a function, whose words are of no interest unless it fails.
class SaidaMuda final : public forjal::Saida {
 public:
    void Linha(std::string_view) override {}
    void Erro(std::string_view texto) override { erro_ += Formatar("{}\n", texto); }
    void Progresso(unsigned, std::string_view) override {}
    [[nodiscard]] const std::string& TextoDosErros() const { return erro_; }

 private:
    std::string erro_;
};

void PublicarPasta(const std::filesystem::path& cliente, const std::filesystem::path& saida, int seq,
                   const std::vector<std::wstring>& mais = {}) {
    std::vector<std::wstring> argumentos{
        L"publicar", L"--cliente=" + cliente.native(), L"--saida=" + saida.native(),
        L"--chave=" + (std::filesystem::path(ZU_PASTA_CHAVES) / L"lista.chave").make_preferred().native(),
        L"--seq=" + std::to_wstring(seq)};
    argumentos.insert(argumentos.end(), mais.begin(), mais.end());
    SaidaMuda muda;
    if (forjal::RodarForjal(argumentos, muda) != forjal::kFeito) Falhar(muda.TextoDosErros());
}

// Every file below, by the system's bare answers.
void Passear(const std::filesystem::path& pasta, const std::function<void(const std::filesystem::path&)>& visitar) {
    ListarPasta(pasta, [&](const WIN32_FIND_DATAW& achado) {
        const std::filesystem::path caminho = pasta / achado.cFileName;
        (achado.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Passear(caminho, visitar) : visitar(caminho);
    });
}

// primeira CLIENTE SAIDA: a first publication; and reading and hashing on all cores, then copying
void MedirPrimeira(const std::filesystem::path& cliente, const std::filesystem::path& saida) {
    std::vector<std::filesystem::path> arquivos;
    Passear(cliente, [&](const std::filesystem::path& caminho) { arquivos.push_back(caminho); });
    const auto crua = [&] {
        const std::vector<std::uint64_t> tamanhos(arquivos.size());
        forjal::EmParalelo(
            tamanhos, [&](std::size_t i) { HashArquivo(arquivos[i], 0); }, [] {});
        CreateDirectoryW(saida.c_str(), nullptr);
        for (std::size_t i = 0; i < arquivos.size(); ++i)
            CopyFileW(arquivos[i].c_str(), (saida / std::to_wstring(i)).c_str(), TRUE);
    };
    double base = std::numeric_limits<double>::max();
    double nosso = base;
    for (int i = 0; i < 2; ++i) {  // each takes long
        base = std::min(base, Cronometrar(crua, 1));
        std::filesystem::remove_all(saida);
        nosso = std::min(nosso, Cronometrar([&] { PublicarPasta(cliente, saida, 1); }, 1));
        std::filesystem::remove_all(saida);
    }
    Imprimir("base", base);
    Imprimir("nosso", nosso);
}

// denovo CLIENTE SAIDA: a publication that finds nothing changed; and a bare walk with attributes
void MedirDeNovo(const std::filesystem::path& cliente, const std::filesystem::path& saida) {
    const auto passeio = [&] {
        Passear(cliente, [](const std::filesystem::path& caminho) {
            InfoArquivo info;
            LerInfoArquivo(caminho, info);
        });
    };
    double base = std::numeric_limits<double>::max();
    double nosso = base;
    for (int seq = 2; seq < 2 + kVoltas; ++seq) {
        base = std::min(base, Cronometrar(passeio, 1));
        nosso = std::min(nosso, Cronometrar([&] { PublicarPasta(cliente, saida, seq, {L"--confiar-na-data"}); }, 1));
    }
    Imprimir("base", base);
    Imprimir("nosso", nosso);
    // What the system tells of a process is not what it holds under Wine.
    Imprimir("memoria", static_cast<double>(maisEmUso));
}

// cru URL DESTINO: a bare WinHTTP read loop into a file
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
}

// grande PASTA URL CAMINHO: one large file by the bare loop and by a run
void MedirGrande(const std::filesystem::path& pasta, const std::string& url, const std::string& caminho) {
    teste::Configurar(pasta, url);
    const std::filesystem::path alvo = pasta / DeUtf8(caminho);
    double base = std::numeric_limits<double>::max();
    double nosso = base;
    for (int i = 0; i < kVoltas; ++i) {
        DeleteFileW(alvo.c_str());
        base = std::min(base, Cronometrar([&] { BaixarCru(DeUtf8(url + caminho), pasta / L"cru.bin"); }, 1));
        DeleteFileW((pasta / L"cru.bin").c_str());
        nosso = std::min(nosso, Cronometrar([] { RodarAte(StatusUpdate::kPronto); }, 1));
    }
    Imprimir("base", base);
    Imprimir("nosso", nosso);
    ImprimirMemoria();
}

// baixar PASTA URL CONEXOES: one run into an empty folder
void MedirBaixar(const std::filesystem::path& pasta, const std::string& url, int conexoes) {
    teste::Configurar(pasta, url, conexoes);
    Imprimir("nosso", Cronometrar([] { RodarAte(StatusUpdate::kPronto); }, 1));
    ImprimirMemoria();
}

// One whole repaint of the main window and of its controls, into memory as on the screen.
void MedirPintura() {
    constexpr int kRepinturas = 200;
    IniciarDesenho();
    {
        const Fontes fontes = CriarFontes();
        const FontesDaPrincipal proprias;
        const LogoEncaixado logo({440, 310, std::vector<std::uint32_t>(440 * 310, 0xFF804020U)});
        const EstadoControle botao;
        const AparenciaPrincipal aparencia{L"Zu", true, CaixaDaTira::kNenhuma, CentroDaPrincipal::kLogo, 40, 60};
        const HandleDc tela(CreateCompatibleDC(nullptr));
        const HDC janela = GetDC(nullptr);
        const auto segundos = Cronometrar([&] {
            for (int i = 0; i < kRepinturas; ++i) {
                const HandleGdi bitmap(CreateCompatibleBitmap(janela, kLarguraPrincipal, kAlturaPrincipal));
                const Selecao selecao(tela.Valor(), bitmap.Valor());
                PintarPrincipal(tela.Valor(), aparencia, logo, fontes, proprias);
                for (int b = 0; b < 4; ++b) {
                    PintarControle(tela.Valor(), {0, 0, 76, 28}, {botao, L"Conectar", true}, fontes);
                }
                BitBlt(janela, 0, 0, kLarguraPrincipal, kAlturaPrincipal, tela.Valor(), 0, 0, SRCCOPY);
                GdiFlush();
            }
        });
        ReleaseDC(nullptr, janela);
        Imprimir("nosso", segundos / kRepinturas);
    }
    EncerrarDesenho();
}

// From the start of the process to its window on the screen.
void MedirJanela(const std::filesystem::path& launcher, const std::filesystem::path& pasta) {
    double melhor = std::numeric_limits<double>::max();
    for (int volta = 0; volta < kVoltas; ++volta) {
        const auto inicio = std::chrono::steady_clock::now();
        const Processo processo =
            IniciarProcesso(MontarLinhaDeComando(launcher, {L"--cliente=" + pasta.native()}), launcher.parent_path());
        HWND janela = nullptr;
        while ((janela = FindWindowW(kClasseDaJanela, nullptr)) == nullptr || !IsWindowVisible(janela))
            Sleep(1);
        melhor = std::min(melhor, std::chrono::duration<double>(std::chrono::steady_clock::now() - inicio).count());
        PostMessageW(janela, WM_CLOSE, 0, 0);
        WaitForSingleObject(processo.processo.Valor(), 10'000);
    }
    Imprimir("nosso", melhor);
}

// assinar ENTRADA SAIDA: signs a list with the development key
void AssinarArquivo(const std::filesystem::path& entrada, const std::filesystem::path& saida) {
    std::string texto;
    if (!LerArquivoInteiro(entrada, texto) || !GravarArquivoAtomico(saida, teste::Assinar(texto))) Falhar("assinar");
}

int Rodar(const std::vector<std::string>& a) {
    const auto caminho = [&](std::size_t i) { return std::filesystem::path(DeUtf8(a[i])); };
    if (a.size() == 2 && a[0] == "hash") {
        MedirHash(caminho(1));
    } else if (a.size() == 2 && a[0] == "lista") {
        MedirLista(caminho(1));
    } else if (a.size() == 2 && a[0] == "json") {
        MedirJson(caminho(1));
    } else if (a.size() == 4 && a[0] == "conferir") {
        MedirConferir(caminho(1), a[2], caminho(3));
    } else if (a.size() == 4 && a[0] == "grande") {
        MedirGrande(caminho(1), a[2], a[3]);
    } else if (a.size() == 4 && a[0] == "baixar") {
        MedirBaixar(caminho(1), a[2], std::atoi(a[3].c_str()));
    } else if (a.size() == 3 && a[0] == "primeira") {
        MedirPrimeira(caminho(1), caminho(2));
    } else if (a.size() == 3 && a[0] == "denovo") {
        MedirDeNovo(caminho(1), caminho(2));
    } else if (a.size() == 3 && a[0] == "janela") {
        MedirJanela(caminho(1), caminho(2));
    } else if (a.size() == 1 && a[0] == "minimizar") {
        PostMessageW(FindWindowW(kClasseDaJanela, nullptr), WM_SYSCOMMAND, SC_MINIMIZE, 0);
    } else if (a.size() == 1 && a[0] == "pintura") {
        MedirPintura();
    } else if (a.size() == 3 && a[0] == "assinar") {
        AssinarArquivo(caminho(1), caminho(2));
    } else {
        Falhar("comando desconhecido");
    }
    return 0;
}

}  // namespace
}  // namespace zu::launcher

int wmain(int quantos, wchar_t** argumentos) {
    std::vector<std::string> textos;
    for (int i = 1; i < quantos; ++i)
        textos.push_back(zu::launcher::ParaUtf8(argumentos[i]));
    return zu::launcher::Rodar(textos);
}
