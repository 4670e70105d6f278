// A loopback web server that plays the good and the hostile cases that a test scripts.
#pragma once

#include <winsock2.h>
// after winsock2.h
#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace zu::launcher::teste {

struct Pedido {
    std::string caminho;   // escaped, without the leading "/" and without the query
    std::string consulta;  // behind the "?"
    std::string cabeca;    // all of it

    // By its name in lower case; empty when there is none.
    [[nodiscard]] std::string Cabecalho(const std::string& nome) const;
};

// How an answer ends once its bytes are out.
enum class Fim {
    kNormal,    // the connection stays for the next request
    kFechar,    // closed in order, which alone tells where the body ends
    kDerrubar,  // reset
    kCalar,     // held open in silence until the server ends
};

struct Resposta {
    int status = 200;
    std::string corpo;
    std::map<std::string, std::string> cabecalhos;
    std::optional<std::uint64_t> anunciado;  // Content-Length when it is not the body's
    Fim fim = Fim::kNormal;
    std::chrono::milliseconds atraso{0};
    std::size_t bloco = 64 * 1024;       // bytes sent at once
    std::chrono::milliseconds pausa{0};  // between two blocks
    bool prender = false;                // behind the first block, until the server is told to let go
};

using Roteiro = std::function<Resposta(const Pedido&)>;
using Mentira = std::function<void(const Pedido&, Resposta&)>;

// Serves content as a good server does, ranges included.
Roteiro Servir(std::string conteudo);

class Servidor {
 public:
    Servidor();
    ~Servidor();

    // The base address, with "/" at its end.
    [[nodiscard]] std::string Url() const { return "http://127.0.0.1:" + std::to_string(porta_) + "/"; }
    // Paths are as they travel. Everything that has no script is answered with 404.
    void Definir(const std::string& caminho, Roteiro roteiro);
    void Definir(const std::string& caminho, Resposta sempre) {
        Definir(caminho, [resposta = std::move(sempre)](const Pedido&) { return resposta; });
    }

    // Lets `mentira` change every answer that the path's script gives.
    void Mentir(const std::string& caminho, const Mentira& mentira);

    // For a path, or all.
    [[nodiscard]] std::vector<Pedido> Pedidos(const std::string& caminho = "") const;
    [[nodiscard]] std::size_t QuantosPedidos() const { return Pedidos().size(); }
    void EsquecerPedidos();
    // The answers that wait for it go on.
    void Soltar() { solto_ = true; }

 private:
    void Aceitar();
    void Atender(SOCKET conexao);
    [[nodiscard]] Roteiro Achar(const std::string& caminho) const;
    bool Enviar(SOCKET conexao, const Resposta& resposta) const;

    SOCKET escuta_ = INVALID_SOCKET;
    int porta_ = 0;
    std::atomic<bool> fim_ = false;
    std::atomic<bool> solto_ = false;
    mutable std::mutex trava_;
    std::map<std::string, Roteiro> roteiros_;
    std::vector<Pedido> pedidos_;
    std::vector<std::jthread> atendentes_;  // touched by the accepting thread alone, while it runs
    std::jthread aceitador_;
};

}  // namespace zu::launcher::teste
