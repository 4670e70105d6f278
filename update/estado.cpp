#include "update/estado.h"

#include "core/arquivo.h"
#include "core/config.h"

namespace zu::launcher {
namespace {

std::filesystem::path NaPastaConfig(const wchar_t* nome) {
    return ObterConfig().pastaJogo / L"Config" / nome;
}

bool Gravar(const std::filesystem::path& caminho, std::string_view texto) {
    return CriarPastas(caminho.parent_path()) && GravarArquivoAtomico(caminho, texto);
}

}  // namespace

std::filesystem::path CaminhoEstado() {
    return NaPastaConfig(L"Launcher.estado");
}

std::filesystem::path CaminhoCache() {
    return NaPastaConfig(L"Launcher.cache");
}

std::filesystem::path CaminhoPendente() {
    return NaPastaConfig(L"Launcher.pendente");
}

std::int64_t LerSeqInstalado() {
    std::string texto;
    return LerArquivoInteiro(CaminhoEstado(), texto) ? SeqDoTexto(texto) : 0;
}

bool GravarEstado(std::int64_t seq, std::string_view versao) {
    return Gravar(CaminhoEstado(), TextoDoEstado(seq, versao));
}

MapaCache LerCache() {
    std::string texto;
    return LerArquivoInteiro(CaminhoCache(), texto) ? CacheDoTexto(texto) : MapaCache{};
}

bool GravarCache(const MapaCache& mapa) {
    return Gravar(CaminhoCache(), TextoDoCache(mapa));
}

}  // namespace zu::launcher
