#include "update/cache.h"

#include <utility>

#include "update/estado.h"

namespace zu::launcher {

void CacheDeArquivos::Carregar() {
    MapaCache lido = LerCache();
    const std::lock_guard guarda(trava_);
    mapa_ = std::move(lido);
    palpite_ = mapa_.begin();
    InfoArquivo info;
    mudou_ = !LerInfoArquivo(CaminhoCache(), info);
    gravada_ = Relogio::now();
}

bool CacheDeArquivos::Achar(std::string_view chave, const InfoArquivo& info, EntradaCache& entrada) const {
    const std::lock_guard guarda(trava_);
    const auto lugar = palpite_ != mapa_.end() && palpite_->first == chave ? palpite_ : mapa_.find(chave);
    if (lugar == mapa_.end()) return false;
    palpite_ = std::next(lugar);
    if (lugar->second.tamanho != info.tamanho || lugar->second.modificado != info.modificado) return false;
    entrada = lugar->second;
    return true;
}

void CacheDeArquivos::Registrar(std::string chave, EntradaCache entrada) {
    const std::lock_guard guarda(trava_);
    EntradaCache& lugar = mapa_[std::move(chave)];
    if (lugar == entrada) return;
    lugar = std::move(entrada);
    mudou_ = true;
}

void CacheDeArquivos::Esquecer(std::string_view chave) {
    const std::lock_guard guarda(trava_);
    const auto lugar = mapa_.find(chave);
    if (lugar == mapa_.end()) return;
    palpite_ = mapa_.erase(lugar);
    mudou_ = true;
}

void CacheDeArquivos::Gravar(std::chrono::milliseconds limite) {
    const std::unique_lock doArquivo(travaDoArquivo_, limite);
    if (!doArquivo) return;
    std::string texto;
    {
        const std::lock_guard guarda(trava_);
        gravada_ = Relogio::now();
        if (!std::exchange(mudou_, false)) return;
        texto = TextoDoCache(mapa_);
    }
    Paciencia paciencia(limite);
    if (GravarCache(texto, paciencia)) return;
    const std::lock_guard guarda(trava_);
    mudou_ = true;
}

void CacheDeArquivos::GravarDeVezEmQuando() {
    {
        const std::lock_guard guarda(trava_);
        if (!mudou_ || Relogio::now() - gravada_ < intervalo_) return;
    }
    Gravar();
}

}  // namespace zu::launcher
