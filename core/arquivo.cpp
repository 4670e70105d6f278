#include "core/arquivo.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <limits>
#include <thread>

#include "core/handle.h"

namespace zu::launcher {
namespace {

constexpr DWORD kFatiaDeLeitura = 16'777'216;  // 16 MiB
constexpr DWORD kCompartilharTudo = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::uint64_t Juntar(DWORD alto, DWORD baixo) {
    return std::uint64_t{alto} << 32 | baixo;
}

bool EscreverTudo(HANDLE arquivo, std::string_view bytes) {
    DWORD escritos = 0;
    return WriteFile(arquivo, bytes.data(), static_cast<DWORD>(bytes.size()), &escritos, nullptr) != 0 &&
           escritos == bytes.size() && FlushFileBuffers(arquivo) != 0;
}

// Whether the file itself can be moved away now.
bool Livre(const std::filesystem::path& origem) {
    const HandleArquivo arquivo(
        CreateFileW(origem.c_str(), DELETE, kCompartilharTudo, nullptr, OPEN_EXISTING, 0, nullptr));
    return arquivo || !PodePassar(GetLastError());
}

// Tries an operation on a file and, when the system refuses it for the file's read-only mark, again without the mark.
template <class Operacao>
bool SemMarca(const std::filesystem::path& caminho, const Operacao& operacao) {
    if (operacao()) return true;
    const DWORD erro = GetLastError();
    InfoArquivo info;
    const bool marcado = erro == ERROR_ACCESS_DENIED && LerInfoArquivo(caminho, info) && info.SomenteLeitura() &&
                         !info.Pasta() &&
                         SetFileAttributesW(caminho.c_str(), info.atributos & ~DWORD{FILE_ATTRIBUTE_READONLY}) != 0;
    if (marcado && operacao()) return true;
    const DWORD ultimo = marcado ? GetLastError() : erro;
    if (marcado) SetFileAttributesW(caminho.c_str(), info.atributos);
    SetLastError(ultimo);
    return false;
}

void ApagarGuardandoErro(const std::filesystem::path& caminho) {
    const DWORD erro = GetLastError();
    DeleteFileW(caminho.c_str());
    SetLastError(erro);
}

// Opens a file or a folder for nothing but questions about it.
HandleArquivo AbrirParaConsulta(const std::filesystem::path& caminho) {
    return HandleArquivo(CreateFileW(caminho.c_str(), 0, kCompartilharTudo, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

bool LerIdentidade(const std::filesystem::path& caminho, BY_HANDLE_FILE_INFORMATION& info) {
    const HandleArquivo arquivo = AbrirParaConsulta(caminho);
    return arquivo && GetFileInformationByHandle(arquivo.Valor(), &info) != 0;
}

// The final path behind a handle, without the "\\?\" that the system puts before it. Empty on failure.
std::wstring CaminhoFinal(HANDLE arquivo) {
    constexpr std::wstring_view kPrefixo = L"\\\\?\\";
    constexpr std::wstring_view kPrefixoRede = L"\\\\?\\UNC\\";
    std::wstring texto(MAX_PATH, L'\0');
    DWORD tamanho = GetFinalPathNameByHandleW(arquivo, texto.data(), static_cast<DWORD>(texto.size()), 0);
    if (tamanho >= texto.size()) {
        texto.resize(tamanho + 1);
        tamanho = GetFinalPathNameByHandleW(arquivo, texto.data(), static_cast<DWORD>(texto.size()), 0);
    }
    if (tamanho == 0 || tamanho >= texto.size()) return {};
    texto.resize(tamanho);
    if (texto.starts_with(kPrefixoRede)) return L"\\\\" + texto.substr(kPrefixoRede.size());
    if (texto.starts_with(kPrefixo)) return texto.substr(kPrefixo.size());
    return texto;
}

}  // namespace

// A scanner that reads a fresh file makes it "access denied" as often as "in use".
bool PodePassar(std::uint32_t erro) {
    return erro == ERROR_ACCESS_DENIED || erro == ERROR_SHARING_VIOLATION || erro == ERROR_LOCK_VIOLATION;
}

bool Paciencia::Esperar(std::chrono::milliseconds passo) const {
    if (cancelar_ != nullptr && cancelar_->load()) return false;
    std::this_thread::sleep_for(passo);
    return true;
}

bool Paciencia::Gastar(std::chrono::milliseconds passo) {
    auto resta = resta_.load();
    do {
        if (resta < passo) return false;
    } while (!resta_.compare_exchange_weak(resta, resta - passo));
    return Esperar(passo);
}

HandleArquivo AbrirParaEscrever(const std::filesystem::path& caminho, std::uint32_t acesso, std::uint32_t partilha,
                                std::uint32_t disposicao) {
    HandleArquivo arquivo;
    SemMarca(caminho, [&] {
        arquivo.Trocar(
            CreateFileW(caminho.c_str(), acesso, partilha, nullptr, disposicao, FILE_ATTRIBUTE_NORMAL, nullptr));
        return static_cast<bool>(arquivo);
    });
    return arquivo;
}

bool GravarArquivoAtomico(const std::filesystem::path& caminho, std::string_view bytes) {
    Paciencia paciencia;
    return GravarArquivoAtomico(caminho, bytes, paciencia);
}

bool GravarArquivoAtomico(const std::filesystem::path& caminho, std::string_view bytes, Paciencia& paciencia) {
    if (bytes.size() > std::numeric_limits<DWORD>::max()) {
        SetLastError(ERROR_FILE_TOO_LARGE);
        return false;
    }
    const std::filesystem::path temporario = ComSufixo(caminho, L".tmp");
    HandleArquivo arquivo = AbrirParaEscrever(temporario, GENERIC_WRITE, 0, CREATE_ALWAYS);
    if (!arquivo) return false;
    const bool escrito = EscreverTudo(arquivo.Valor(), bytes);
    arquivo.Fechar();
    if (escrito && MoverSobre(temporario, caminho, paciencia)) return true;
    ApagarGuardandoErro(temporario);
    return false;
}

bool LerArquivoInteiro(const std::filesystem::path& caminho, std::string& bytes) {
    const HandleArquivo arquivo(CreateFileW(caminho.c_str(), GENERIC_READ, kCompartilharTudo, nullptr, OPEN_EXISTING,
                                            FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    LARGE_INTEGER tamanho{};
    if (!arquivo || GetFileSizeEx(arquivo.Valor(), &tamanho) == 0) return false;
    const auto total = static_cast<std::uint64_t>(tamanho.QuadPart);
    if (total > kLimiteArquivoInteiro) {
        SetLastError(ERROR_FILE_TOO_LARGE);
        return false;
    }
    bytes.resize(total);
    std::size_t lidos = 0;
    while (lidos < total) {
        const DWORD pedido = static_cast<DWORD>(std::min<std::uint64_t>(total - lidos, kFatiaDeLeitura));
        DWORD agora = 0;
        if (ReadFile(arquivo.Valor(), bytes.data() + lidos, pedido, &agora, nullptr) == 0 || agora == 0) break;
        lidos += agora;
    }
    bytes.resize(lidos);
    return lidos == total;
}

bool InfoArquivo::Pasta() const {
    return (atributos & FILE_ATTRIBUTE_DIRECTORY) != 0;
}
bool InfoArquivo::SomenteLeitura() const {
    return (atributos & FILE_ATTRIBUTE_READONLY) != 0;
}

bool LerInfoArquivo(const std::filesystem::path& caminho, InfoArquivo& info) {
    return LerInfoArquivo(caminho.c_str(), info);
}

bool LerInfoArquivo(const wchar_t* caminho, InfoArquivo& info) {
    WIN32_FILE_ATTRIBUTE_DATA dados{};
    if (GetFileAttributesExW(caminho, GetFileExInfoStandard, &dados) == 0) return false;
    info.tamanho = Juntar(dados.nFileSizeHigh, dados.nFileSizeLow);
    info.modificado = Juntar(dados.ftLastWriteTime.dwHighDateTime, dados.ftLastWriteTime.dwLowDateTime);
    info.atributos = dados.dwFileAttributes;
    return true;
}

std::uint64_t TamanhoDoArquivo(const std::filesystem::path& caminho) {
    InfoArquivo info;
    return LerInfoArquivo(caminho, info) ? info.tamanho : 0;
}

bool DescarregarArquivo(const std::filesystem::path& caminho) {
    const HandleArquivo arquivo = AbrirParaEscrever(caminho, GENERIC_WRITE, kCompartilharTudo, OPEN_EXISTING);
    return arquivo && FlushFileBuffers(arquivo.Valor()) != 0;
}

bool EncurtarArquivo(const std::filesystem::path& caminho, std::uint64_t tamanho) {
    const HandleArquivo arquivo = AbrirParaEscrever(caminho, GENERIC_WRITE, kCompartilharTudo, OPEN_EXISTING);
    LARGE_INTEGER fim{};
    fim.QuadPart = static_cast<LONGLONG>(tamanho);
    return arquivo && SetFilePointerEx(arquivo.Valor(), fim, nullptr, FILE_BEGIN) != 0 &&
           SetEndOfFile(arquivo.Valor()) != 0;
}

std::filesystem::path ComSufixo(std::filesystem::path caminho, const wchar_t* sufixo) {
    caminho += sufixo;
    return caminho;
}

bool CriarPastas(const std::filesystem::path& pasta, bool* nova) {
    bool criou = CreateDirectoryW(pasta.c_str(), nullptr) != 0;
    if (!criou && GetLastError() == ERROR_PATH_NOT_FOUND && pasta.has_relative_path() &&
        CriarPastas(pasta.parent_path())) {
        criou = CreateDirectoryW(pasta.c_str(), nullptr) != 0;
    }
    if (nova != nullptr) *nova = criou;
    if (criou) return true;
    // Another thread may have made it meanwhile, and the root of a drive answers with other errors than "exists".
    const DWORD erro = GetLastError();
    InfoArquivo info;
    const bool existe = LerInfoArquivo(pasta, info) && info.Pasta();
    SetLastError(erro);
    return existe;
}

bool MoverUmaVez(const std::filesystem::path& origem, const std::filesystem::path& destino) {
    return SemMarca(destino, [&] {
        return MoveFileExW(origem.c_str(), destino.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    });
}

bool MoverSobre(const std::filesystem::path& origem, const std::filesystem::path& destino) {
    Paciencia paciencia;
    return MoverSobre(origem, destino, paciencia);
}

bool MoverSobre(const std::filesystem::path& origem, const std::filesystem::path& destino, Paciencia& paciencia) {
    constexpr std::chrono::milliseconds kMenorPasso{10};
    constexpr std::chrono::milliseconds kMaiorPasso{80};
    const auto fim = std::chrono::steady_clock::now() + Paciencia::kPorArquivo;
    for (auto passo = kMenorPasso; !MoverUmaVez(origem, destino); passo = std::min(2 * passo, kMaiorPasso)) {
        const DWORD erro = GetLastError();
        const bool insistir = PodePassar(erro) && std::chrono::steady_clock::now() < fim &&
                              (Livre(origem) ? paciencia.Gastar(passo) : paciencia.Esperar(passo));
        SetLastError(erro);
        if (!insistir) return false;
    }
    return true;
}

bool ApagarArquivo(const std::filesystem::path& caminho) {
    return SemMarca(caminho, [&] { return DeleteFileW(caminho.c_str()) != 0; });
}

bool EmUso(const std::filesystem::path& caminho) {
    // A running program refuses being written alone; a file with the read-only mark answers only who wants to read it.
    for (const DWORD acesso : {DWORD{GENERIC_WRITE}, DWORD{GENERIC_READ}}) {
        const HandleArquivo arquivo(
            CreateFileW(caminho.c_str(), acesso, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        const DWORD erro = GetLastError();
        if (arquivo) return false;
        if (erro == ERROR_SHARING_VIOLATION || erro == ERROR_LOCK_VIOLATION || erro == ERROR_USER_MAPPED_FILE)
            return true;
    }
    return false;
}

bool MesmoArquivo(const std::filesystem::path& a, const std::filesystem::path& b) {
    // Opening two files costs far more than asking for two sizes, which nearly always settles it.
    InfoArquivo dadosA;
    InfoArquivo dadosB;
    if (!LerInfoArquivo(a, dadosA) || !LerInfoArquivo(b, dadosB) || dadosA.tamanho != dadosB.tamanho) return false;
    BY_HANDLE_FILE_INFORMATION infoA{};
    BY_HANDLE_FILE_INFORMATION infoB{};
    return LerIdentidade(a, infoA) && LerIdentidade(b, infoB) &&
           infoA.dwVolumeSerialNumber == infoB.dwVolumeSerialNumber && infoA.nFileIndexHigh == infoB.nFileIndexHigh &&
           infoA.nFileIndexLow == infoB.nFileIndexLow;
}

std::filesystem::path CaminhoCanonico(const std::filesystem::path& caminho) {
    std::error_code erro;
    std::filesystem::path existente = std::filesystem::absolute(caminho, erro).lexically_normal();
    if (erro) return caminho;
    if (!existente.has_filename()) existente = existente.parent_path();  // "C:\Zu\" names the folder "C:\Zu"
    std::filesystem::path resto;
    while (true) {
        if (const HandleArquivo arquivo = AbrirParaConsulta(existente)) {
            const std::wstring final = CaminhoFinal(arquivo.Valor());
            if (final.empty()) break;
            return resto.empty() ? std::filesystem::path(final) : final / resto;
        }
        if (!existente.has_relative_path()) break;
        resto = resto.empty() ? existente.filename() : existente.filename() / resto;
        existente = existente.parent_path();
    }
    return resto.empty() ? existente : existente / resto;
}

std::filesystem::path CaminhoDoPrograma() {
    std::array<wchar_t, MAX_PATH> texto{};
    const DWORD tamanho = GetModuleFileNameW(nullptr, texto.data(), static_cast<DWORD>(texto.size()));
    return {std::wstring(texto.data(), std::min<std::size_t>(tamanho, texto.size()))};
}

std::filesystem::path PastaDoPrograma() {
    return CaminhoDoPrograma().parent_path();
}

}  // namespace zu::launcher
