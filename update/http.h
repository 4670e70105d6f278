// The HTTP client of the update engine: synchronous, over WinHTTP. Every call blocks its thread; any number of threads
// may call at once. A failure returns false with one Portuguese phrase in `erro`; nothing is thrown, nothing logged.
#pragma once

#include <windows.h>
// after windows.h
#include <winhttp.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "core/handle.h"

namespace zu::launcher {

struct TracosHttp {
    using Tipo = HINTERNET;
    static Tipo Nulo() noexcept { return nullptr; }
    static void Fechar(Tipo h) noexcept { WinHttpCloseHandle(h); }
};
using HandleHttp = Handle<TracosHttp>;

// The handles of one exchange; the request closes before its connection.
struct HttpRequest {
    HandleHttp conexao;
    HandleHttp requisicao;
};

// Receives the number of bytes just written: a difference, not a total. A transfer that goes on where an earlier one
// stopped announces itself with 0 before its first block. May be empty.
using ProgressCallback = std::function<void(std::uint64_t)>;

// Sends a GET and reads the answer's status. `cabecalhos`: further request headers, each with its CR LF, or empty.
bool HttpAbrir(const std::wstring& url, const std::wstring& cabecalhos, HttpRequest& troca, std::uint32_t& status,
               std::string& erro);

// A header of the answer, by its name; empty when the answer has none, or one of 256 characters and more.
std::string HttpCabecalho(const HttpRequest& troca, const wchar_t* nome);

// Reads what has arrived of the answer's body, and waits only while nothing has: a read of a whole block would keep
// back what is already here until the block is full, and lose it when the line breaks. No bytes is the end. False: the
// thread's last error says why.
bool HttpLerChegado(const HttpRequest& troca, char* bloco, DWORD tamanho, DWORD& lidos);

// Fetches a resource into memory, past every cache; more than `maximo` bytes is a failure. A set `cancelar`, which may
// be absent, ends it between two blocks.
bool HttpBaixarTexto(const std::wstring& url, std::string& corpo, std::string& erro, std::uint64_t maximo,
                     const std::atomic<bool>* cancelar = nullptr);

// The message of a transfer that ran past its limit.
constexpr std::string_view kErroDeSobra = "o servidor mandou mais dados que o esperado";

constexpr std::uint64_t kSemLimite = ~std::uint64_t{0};

// The file of a transfer, for who takes it over as it is.
struct Recebido {
    bool vazio = false;                             // said before: nothing stands at the destination
    HandleArquivo arquivo;                          // open for writing; none when it was complete before
    std::function<void(const void*, DWORD)> bloco;  // may be set: sees what is written, when nothing was there before
};

// Downloads into a file, resuming what already stands at `destino`. With an expected size (0: unknown) a destination of
// that size is complete without a request; without one, more than `maximo` bytes in all is a failure. Every byte that
// has arrived is in the file, but not yet on the disk: a power cut may leave its name and size without them. After a
// failure it stays for a later resume, except where its bytes are known to be wrong: longer than expected, or refused
// with 416.
bool HttpBaixarArquivo(const std::wstring& url, const std::filesystem::path& destino, std::uint64_t esperado,
                       const ProgressCallback& progresso, const std::atomic<bool>& cancelar, std::string& erro,
                       std::uint64_t maximo = kSemLimite, Recebido* recebido = nullptr);

// The thread's last error in words, behind the stage at which it came.
std::string HttpErroTexto(std::string_view etapa);

}  // namespace zu::launcher
