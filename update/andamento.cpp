#include "update/andamento.h"

#include <algorithm>
#include <utility>

#include "core/log.h"

namespace zu::launcher {

void Andamento::Zerar(bool reparar) {
    const std::lock_guard guarda(trava_);
    estado_ = {};
    estado_.reparar = reparar;
    resultados_.clear();
    trocas_.clear();
}

void Andamento::Recomecar() {
    const std::lock_guard guarda(trava_);
    resultados_.clear();
    trocas_.clear();
}

void Andamento::Definir(StatusUpdate status, std::string_view texto) {
    {
        const std::lock_guard guarda(trava_);
        Escrever(status, texto);
    }
    LogLinha("[update] {}", texto);
}

void Andamento::Escrever(StatusUpdate status, std::string_view texto) {
    estado_.status = status;
    estado_.texto = texto;
    estado_.erro = status == StatusUpdate::kErro ? texto : std::string_view{};
}

void Andamento::Comecar(StatusUpdate status, std::string_view texto, std::uint64_t arquivos, std::uint64_t bytes) {
    {
        const std::lock_guard guarda(trava_);
        Escrever(status, texto);
        estado_.arquivosFeitos = 0;
        estado_.arquivosTotal = arquivos;
        estado_.bytesFeitos = 0;
        reaproveitados_ = 0;
        estado_.bytesTotal = bytes;
        estado_.estacionados = 0;
        estado_.arquivo.clear();
        estado_.fracao = 0;
        estado_.velocidade = 0;
    }
    LogLinha("[update] {}", texto);
}

void Andamento::DefinirVersao(std::string_view versao) {
    const std::lock_guard guarda(trava_);
    estado_.versao = versao;
}

void Andamento::DefinirArquivo(std::string_view caminho) {
    const std::lock_guard guarda(trava_);
    estado_.arquivo = caminho;
}

void Andamento::SomarArquivos(std::size_t quantos) {
    const std::lock_guard guarda(trava_);
    estado_.arquivosFeitos += quantos;
}

void Andamento::DefinirBytes(std::uint64_t feitos) {
    const std::lock_guard guarda(trava_);
    estado_.bytesFeitos = std::min(feitos + static_cast<std::uint64_t>(reaproveitados_), estado_.bytesTotal);
    estado_.fracao = estado_.bytesTotal == 0
                         ? 0
                         : static_cast<double>(estado_.bytesFeitos) / static_cast<double>(estado_.bytesTotal);
}

void Andamento::SomarReaproveitados(std::int64_t bytes) {
    const std::lock_guard guarda(trava_);
    reaproveitados_ += bytes;
}

void Andamento::DefinirVelocidade(double bytesPorSegundo) {
    const std::lock_guard guarda(trava_);
    estado_.velocidade = bytesPorSegundo;
}

void Andamento::Anotar(LinhaResultado linha) {
    const std::lock_guard guarda(trava_);
    resultados_.push_back(std::move(linha));
}

void Andamento::Estacionar(TrocaPendente troca) {
    const std::lock_guard guarda(trava_);
    trocas_.push_back(std::move(troca));
    ++estado_.estacionados;
}

EstadoAtualizacao Andamento::Copia() const {
    const std::lock_guard guarda(trava_);
    return estado_;
}

std::vector<LinhaResultado> Andamento::Resultados() const {
    const std::lock_guard guarda(trava_);
    return resultados_;
}

std::vector<TrocaPendente> Andamento::Trocas() const {
    const std::lock_guard guarda(trava_);
    return trocas_;
}

}  // namespace zu::launcher
