#include "tools/forjal/publicar/troca.h"

#include <windows.h>

#include <algorithm>
#include <functional>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/pasta.h"
#include "core/texto.h"
#include "core/utf16.h"
#include "tools/forjal/publicados.h"
#include "tools/forjal/varredura.h"
#include "update/caminhos.h"

namespace zu::launcher::forjal {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kEsperaPorDestino = 5s;
constexpr std::chrono::milliseconds kPasso = 50ms;
constexpr std::string_view kMarcaDoDiario = "Forjal.troca 1";
constexpr std::string_view kMarcaNovo = "novo";
constexpr std::string_view kMarcaCaixa = "caixa";

std::filesystem::path LugarDe(const std::filesystem::path& saida, std::uint64_t numero) {
    return saida / kPastaDosNovos / std::to_wstring(numero);
}

bool Existe(const std::filesystem::path& caminho) {
    InfoArquivo info;
    return LerInfoArquivo(caminho, info);
}

// Tries until it works, fails for another reason than a holder, or `paciencia` is at its end.
bool Insistir(Paciencia& paciencia, const std::function<bool()>& tentar) {
    while (!tentar()) {
        const DWORD erro = GetLastError();
        const bool insistir = PodePassar(erro) && paciencia.Gastar(kPasso);
        SetLastError(erro);
        if (!insistir) return false;
    }
    return true;
}

bool Falhar(std::string& erro, std::string_view caminho) {
    erro = Formatar("{}: não foi possível pôr no lugar (erro {})", caminho, GetLastError());
    return false;
}

bool MudarCaixa(const std::filesystem::path& saida, const PassoDaTroca& passo, Paciencia& paciencia,
                std::string& erro) {
    const std::filesystem::path meio = LugarDe(saida, passo.numero);
    const std::filesystem::path certo = saida / DeUtf8(passo.caminho);
    const auto mover = [](const std::filesystem::path& de, const std::filesystem::path& para) {
        return [&de, &para] { return MoveFileExW(de.c_str(), para.c_str(), MOVEFILE_WRITE_THROUGH) != 0; };
    };
    // By way of another name, because a file system may take a change of letter case alone for no change at all.
    if (!Existe(meio)) {
        const std::filesystem::path atual = certo.parent_path() / NomeNoDisco(certo);
        if (atual.filename() == certo.filename()) return true;
        if (!Insistir(paciencia, mover(atual, meio))) return Falhar(erro, passo.caminho);
    }
    return Insistir(paciencia, mover(meio, certo)) || Falhar(erro, passo.caminho);
}

bool PorNoLugar(const std::filesystem::path& saida, const PassoDaTroca& passo, Paciencia& paciencia,
                std::string& erro) {
    const std::filesystem::path novo = LugarDe(saida, passo.numero);
    const std::filesystem::path destino = saida / DeUtf8(passo.caminho);
    if (Existe(novo)) {
        return Insistir(paciencia, [&] { return MoverUmaVez(novo, destino); }) || Falhar(erro, passo.caminho);
    }
    InfoArquivo info;
    if (LerInfoArquivo(destino, info) && !info.Pasta() && info.tamanho == passo.tamanho) return true;
    erro = Formatar("{}: o arquivo preparado sumiu de {}", passo.caminho, ParaUtf8(kPastaDosNovos));
    return false;
}

std::string TextoDoDiario(std::span<const PassoDaTroca> passos) {
    std::string texto = Formatar("{}\n", kMarcaDoDiario);
    for (const PassoDaTroca& passo : passos) {
        texto += Formatar("{}\t{}\t{}\t{}\n", passo.caixaDasLetras ? kMarcaCaixa : kMarcaNovo, passo.numero,
                          passo.tamanho, passo.caminho);
    }
    return texto;
}

// Somebody may have tampered with it: nothing in it leads out of the folder.
bool LerDiario(const std::filesystem::path& saida, std::vector<PassoDaTroca>& passos, std::string& erro) {
    std::string texto;
    if (!LerArquivoInteiro(saida / kNomeDoDiario, texto)) {
        erro = Formatar("não foi possível ler {} (erro {})", ParaUtf8(kNomeDoDiario), GetLastError());
        return false;
    }
    std::string_view resto = texto;
    bool certo = TomarAte(resto, '\n') == kMarcaDoDiario;
    while (certo && !resto.empty()) {
        std::string_view linha = TomarAte(resto, '\n');
        PassoDaTroca passo;
        const std::string_view marca = TomarAte(linha, '\t');
        passo.caixaDasLetras = marca == kMarcaCaixa;
        certo = (passo.caixaDasLetras || marca == kMarcaNovo) &&
                LerNumeroInteiro(TomarAte(linha, '\t'), passo.numero) &&
                LerNumeroInteiro(TomarAte(linha, '\t'), passo.tamanho) && update::CaminhoSeguro(linha);
        passo.caminho = update::NormalizarCaminho(linha);
        passos.push_back(std::move(passo));
    }
    if (!certo) erro = Formatar("{}: conteúdo inválido", ParaUtf8(kNomeDoDiario));
    return certo;
}

void Varrer(const std::filesystem::path& saida) {
    const std::filesystem::path pasta = saida / kPastaDosNovos;
    ListarPasta(pasta, [&](const WIN32_FIND_DATAW& achado) { ApagarArquivo(pasta / achado.cFileName); });
    RemoveDirectoryW(pasta.c_str());
}

bool Executar(const std::filesystem::path& saida, std::span<const PassoDaTroca> passos, std::string& erro) {
    Paciencia paciencia(kEsperaPorDestino);
    for (const PassoDaTroca& passo : passos) {
        if (passo.caixaDasLetras ? !MudarCaixa(saida, passo, paciencia, erro)
                                 : !PorNoLugar(saida, passo, paciencia, erro)) {
            erro = Formatar("{}; {}", erro, kTrocaInterrompida);
            return false;
        }
    }
    if (!ApagarArquivo(saida / kNomeDoDiario)) return Falhar(erro, ParaUtf8(kNomeDoDiario));
    Varrer(saida);
    return true;
}

}  // namespace

bool TrocaInterrompida(const std::filesystem::path& saida) {
    return Existe(saida / kNomeDoDiario);
}

bool ContinuarTroca(const std::filesystem::path& saida, std::string& erro) {
    if (!TrocaInterrompida(saida)) return true;
    std::vector<PassoDaTroca> passos;
    return LerDiario(saida, passos, erro) && Executar(saida, passos, erro);
}

Troca::~Troca() {
    if (!iniciada_ || efetivando_) return;
    Varrer(saida_);
    std::for_each(pastasCriadas_.rbegin(), pastasCriadas_.rend(),
                  [](const std::filesystem::path& pasta) { RemoveDirectoryW(pasta.c_str()); });
}

bool Troca::Iniciar(std::string& erro) {
    Varrer(saida_);
    iniciada_ = CreateDirectoryW((saida_ / kPastaDosNovos).c_str(), nullptr) != 0;
    if (!iniciada_) {
        erro = Formatar("não foi possível criar {} (erro {})", ParaUtf8(kPastaDosNovos), GetLastError());
    }
    return iniciada_;
}

std::uint64_t Troca::NovoNumero() {
    const std::lock_guard tranca(mutex_);
    return ++proximo_;
}

Troca::Arquivo::Arquivo(Troca& troca, std::string caminho) : troca_(troca) {
    passo_.caminho = std::move(caminho);
    passo_.numero = troca.NovoNumero();
    arquivo_.Trocar(CreateFileW(LugarDe(troca.saida_, passo_.numero).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool Troca::Arquivo::Escrever(std::span<const std::uint8_t> bytes) {
    DWORD escritos = 0;
    passo_.tamanho += bytes.size();
    return WriteFile(arquivo_.Valor(), bytes.data(), static_cast<DWORD>(bytes.size()), &escritos, nullptr) != 0 &&
           escritos == bytes.size();
}

bool Troca::Arquivo::Concluir() {
    if (FlushFileBuffers(arquivo_.Valor()) == 0) return false;
    arquivo_.Fechar();
    const std::lock_guard tranca(troca_.mutex_);
    troca_.passos_.push_back(std::move(passo_));
    return true;
}

void Troca::AcertarCaixa(const std::string& caminho) {
    caixas_.push_back({.caminho = caminho, .numero = NovoNumero(), .caixaDasLetras = true});
}

bool Troca::GravarTexto(std::wstring_view nome, std::string_view texto, std::string& erro) {
    Arquivo arquivo(*this, ParaUtf8(nome));
    if (arquivo && arquivo.Escrever({reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()}) &&
        arquivo.Concluir()) {
        return true;
    }
    erro = Formatar("não foi possível gravar {} (erro {})", ParaUtf8(nome), GetLastError());
    return false;
}

bool Troca::CriarPastasDosDestinos(std::string& erro) {
    std::set<std::string> prontas;
    for (const PassoDaTroca& passo : passos_) {
        for (const std::string_view pasta : PastasDe(passo.caminho)) {
            if (!prontas.emplace(pasta).second) continue;
            const std::filesystem::path caminho = saida_ / DeUtf8(pasta);
            InfoArquivo info;
            if (CreateDirectoryW(caminho.c_str(), nullptr) != 0) {
                pastasCriadas_.push_back(caminho);
            } else if (!LerInfoArquivo(caminho, info) || !info.Pasta()) {
                erro = Formatar("{}: não foi possível criar a pasta (erro {})", pasta, GetLastError());
                return false;
            }
        }
    }
    return true;
}

// A running program is not found out this way: its file can be opened to be deleted, and only the deletion fails.
bool Troca::EsperarDestinos(std::string& erro) const {
    Paciencia paciencia(kEsperaPorDestino);
    for (const PassoDaTroca& passo : passos_) {
        const std::filesystem::path destino = saida_ / DeUtf8(passo.caminho);
        const auto livre = [&destino] {
            const HandleArquivo aberto(CreateFileW(destino.c_str(), DELETE,
                                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
            return aberto || GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND;
        };
        if (Insistir(paciencia, livre)) continue;
        erro = Formatar("{}: em uso, não pode ser trocado agora (erro {})", passo.caminho, GetLastError());
        return false;
    }
    return true;
}

bool Troca::Preparar(std::string_view registro, std::string_view lista, std::string& erro) {
    if (!registro.empty()) {
        if (!GravarTexto(kNomeDoRegistro, registro, erro)) return false;
        // The record goes first, so that it never misses a file that is in the folder.
        std::rotate(passos_.begin(), passos_.end() - 1, passos_.end());
    }
    if (!lista.empty() && !GravarTexto(kNomeDaLista, lista, erro)) return false;
    if (!CriarPastasDosDestinos(erro) || !EsperarDestinos(erro)) return false;
    passos_.insert(passos_.begin(), caixas_.begin(), caixas_.end());
    return GravarTexto(kNomeDoDiario, TextoDoDiario(passos_), erro);
}

bool Troca::Efetivar(std::string& erro) {
    const PassoDaTroca diario = passos_.back();
    passos_.pop_back();
    if (!MoverSobre(LugarDe(saida_, diario.numero), saida_ / kNomeDoDiario)) return Falhar(erro, diario.caminho);
    efetivando_ = true;
    return Executar(saida_, passos_, erro);
}

}  // namespace zu::launcher::forjal
