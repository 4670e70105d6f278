#include "update/estado.h"

#include "core/config.h"

namespace zu::launcher {
namespace {

std::filesystem::path NaPastaConfig(const wchar_t* nome) {
    return ObterConfig().pastaJogo / L"Config" / nome;
}

bool Gravar(const std::filesystem::path& caminho, std::string_view texto, Paciencia& paciencia) {
    return CriarPastas(caminho.parent_path()) && GravarArquivoAtomico(caminho, texto, paciencia);
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
    Paciencia paciencia;
    return Gravar(CaminhoEstado(), TextoDoEstado(seq, versao), paciencia);
}

MapaCache LerCache() {
    std::string texto;
    return LerArquivoInteiro(CaminhoCache(), texto) ? CacheDoTexto(texto) : MapaCache{};
}

bool GravarCache(std::string_view texto, Paciencia& paciencia) {
    return Gravar(CaminhoCache(), texto, paciencia);
}

}  // namespace zu::launcher
