#include "tests/suporte/servidor.h"

#include <algorithm>
#include <stdexcept>

#include "core/formato.h"
#include "core/texto.h"

namespace zu::launcher::teste {
namespace {

constexpr std::chrono::milliseconds kPasso{20};

// Waits until there is something to take from the socket. False when the server is to end.
bool Esperar(SOCKET socket, const std::atomic<bool>& fim) {
    while (!fim) {
        fd_set prontos{};
        FD_SET(socket, &prontos);
        timeval limite{0, 20'000};
        if (select(0, &prontos, nullptr, nullptr, &limite) != 0) return true;
    }
    return false;
}

// Reads up to the blank line that ends a request's headers, behind which nothing comes before the answer. False when
// the client closed.
bool LerPedido(SOCKET conexao, Pedido& pedido, const std::atomic<bool>& fim) {
    pedido = {};
    char bloco[2048];
    if (!Esperar(conexao, fim)) return false;
    while (!pedido.cabeca.ends_with("\r\n\r\n")) {
        const int lidos = recv(conexao, bloco, sizeof bloco, 0);
        if (lidos <= 0) return false;
        pedido.cabeca.append(bloco, static_cast<std::size_t>(lidos));
    }
    std::string_view resto = pedido.cabeca;
    TomarAte(resto, '/');
    std::string_view alvo = TomarAte(resto, ' ');
    pedido.caminho = TomarAte(alvo, '?');
    pedido.consulta = alvo;
    return true;
}

bool EnviarBytes(SOCKET conexao, std::string_view bytes) {
    return send(conexao, bytes.data(), static_cast<int>(bytes.size()), 0) == static_cast<int>(bytes.size());
}

}  // namespace

std::string Pedido::Cabecalho(const std::string& nome) const {
    const std::size_t lugar = MinusculasAscii(cabeca).find("\n" + nome + ": ");
    if (lugar == std::string::npos) return "";
    std::string_view resto = std::string_view(cabeca).substr(lugar + nome.size() + 3);
    return std::string(TomarAte(resto, '\r'));
}

Roteiro Servir(std::string conteudo) {
    return [conteudo = std::move(conteudo)](const Pedido& pedido) -> Resposta {
        const std::string faixa = pedido.Cabecalho("range");
        if (faixa.empty()) return {.corpo = conteudo};
        const std::size_t traco = faixa.find('-');
        const std::uint64_t inicio = std::stoull(faixa.substr(std::string_view("bytes=").size()));
        const std::uint64_t fim = traco + 1 < faixa.size() ? std::stoull(faixa.substr(traco + 1)) + 1 : conteudo.size();
        if (inicio >= conteudo.size()) {
            return {.status = 416, .cabecalhos = {{"Content-Range", Formatar("bytes */{}", conteudo.size())}}};
        }
        const std::string corpo = conteudo.substr(inicio, fim - inicio);
        const std::string lugar = Formatar("bytes {}-{}/{}", inicio, inicio + corpo.size() - 1, conteudo.size());
        return {.status = 206, .corpo = corpo, .cabecalhos = {{"Content-Range", lugar}}};
    };
}

Servidor::Servidor() {
    WSADATA dados{};
    if (WSAStartup(MAKEWORD(2, 2), &dados) != 0) throw std::runtime_error("WSAStartup");
    escuta_ = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in endereco{};
    endereco.sin_family = AF_INET;
    endereco.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int tamanho = sizeof endereco;
    if (bind(escuta_, reinterpret_cast<sockaddr*>(&endereco), tamanho) != 0 || listen(escuta_, 64) != 0 ||
        getsockname(escuta_, reinterpret_cast<sockaddr*>(&endereco), &tamanho) != 0) {
        throw std::runtime_error("servidor de teste");
    }
    porta_ = ntohs(endereco.sin_port);
    aceitador_ = std::jthread([this] { Aceitar(); });
}

Servidor::~Servidor() {
    fim_ = true;
    aceitador_.join();
    closesocket(escuta_);
    atendentes_.clear();
    WSACleanup();
}

void Servidor::Definir(const std::string& caminho, Roteiro roteiro) {
    const std::lock_guard guarda(trava_);
    roteiros_[caminho] = std::move(roteiro);
}

void Servidor::Mentir(const std::string& caminho, const Mentira& mentira) {
    Definir(caminho, [bom = Achar(caminho), mentira](const Pedido& pedido) {
        Resposta resposta = bom(pedido);
        mentira(pedido, resposta);
        return resposta;
    });
}

std::vector<Pedido> Servidor::Pedidos(const std::string& caminho) const {
    const std::lock_guard guarda(trava_);
    std::vector<Pedido> deste;
    std::ranges::copy_if(pedidos_, std::back_inserter(deste),
                         [&](const Pedido& p) { return caminho.empty() || p.caminho == caminho; });
    return deste;
}

void Servidor::EsquecerPedidos() {
    const std::lock_guard guarda(trava_);
    pedidos_.clear();
}

void Servidor::Aceitar() {
    while (Esperar(escuta_, fim_)) {
        SOCKET const conexao = accept(escuta_, nullptr, nullptr);
        if (conexao == INVALID_SOCKET) return;
        atendentes_.emplace_back([this, conexao] { Atender(conexao); });
    }
}

void Servidor::Atender(SOCKET conexao) {
    // Headers and body leave at once, instead of the body waiting until the client has confirmed the headers.
    const BOOL semEspera = TRUE;
    setsockopt(conexao, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&semEspera), sizeof semEspera);
    Fim fim = Fim::kNormal;
    for (Pedido pedido; fim == Fim::kNormal && LerPedido(conexao, pedido, fim_);) {
        {
            const std::lock_guard guarda(trava_);
            pedidos_.push_back(pedido);
        }
        const Resposta resposta = Achar(pedido.caminho)(pedido);
        std::this_thread::sleep_for(resposta.atraso);
        fim = Enviar(conexao, resposta) ? resposta.fim : Fim::kFechar;
    }
    const linger jaNao{1, 0};
    if (fim == Fim::kDerrubar)
        setsockopt(conexao, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&jaNao), sizeof jaNao);
    while (fim == Fim::kCalar && !fim_)
        std::this_thread::sleep_for(kPasso);
    closesocket(conexao);
}

Roteiro Servidor::Achar(const std::string& caminho) const {
    const std::lock_guard guarda(trava_);
    const auto lugar = roteiros_.find(caminho);
    return lugar != roteiros_.end() ? lugar->second : [](const Pedido&) { return Resposta{.status = 404}; };
}

bool Servidor::Enviar(SOCKET conexao, const Resposta& resposta) const {
    std::string cabeca = Formatar("HTTP/1.1 {} X\r\n", resposta.status);
    if (resposta.fim != Fim::kFechar)
        cabeca += Formatar("Content-Length: {}\r\n", resposta.anunciado.value_or(resposta.corpo.size()));
    for (const auto& [nome, valor] : resposta.cabecalhos)
        cabeca += Formatar("{}: {}\r\n", nome, valor);
    if (resposta.fim != Fim::kNormal) cabeca += "Connection: close\r\n";
    bool enviou = EnviarBytes(conexao, cabeca + "\r\n");
    for (std::string_view corpo = resposta.corpo; enviou && !corpo.empty() && !fim_;) {
        enviou = EnviarBytes(conexao, corpo.substr(0, resposta.bloco));
        corpo.remove_prefix(std::min(resposta.bloco, corpo.size()));
        if (corpo.empty()) break;
        std::this_thread::sleep_for(resposta.pausa);
        while (resposta.prender && !solto_ && !fim_)
            std::this_thread::sleep_for(kPasso);
    }
    return enviou;
}

}  // namespace zu::launcher::teste
