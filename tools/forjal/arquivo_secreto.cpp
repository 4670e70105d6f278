#include "tools/forjal/arquivo_secreto.h"

#include <windows.h>

#include <vector>

#include "core/arquivo.h"
#include "core/formato.h"
#include "core/handle.h"
#include "core/so_este_usuario.h"
#include "core/utf16.h"

namespace zu::launcher::forjal {
namespace {

bool Criar(const ArquivoNovo& novo, std::vector<HandleArquivo>& abertos, std::string& erro) {
    SoEsteUsuario acesso(FILE_ALL_ACCESS);
    const std::string nome = ParaUtf8(novo.caminho.native());
    if (novo.secreto && acesso.Atributos() == nullptr) {
        erro = Formatar("não foi possível restringir o acesso a {} (erro {})", nome, GetLastError());
        return false;
    }
    HandleArquivo arquivo(CreateFileW(novo.caminho.c_str(), GENERIC_WRITE, 0,
                                      novo.secreto ? acesso.Atributos() : nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                                      nullptr));
    if (!arquivo) {
        const DWORD falha = GetLastError();
        erro = falha == ERROR_FILE_EXISTS ? Formatar("{} já existe e não é sobrescrito", nome)
                                          : Formatar("não foi possível criar {} (erro {})", nome, falha);
        return false;
    }
    abertos.push_back(std::move(arquivo));
    return true;
}

bool Escrever(const HandleArquivo& aberto, const ArquivoNovo& arquivo, std::string& erro) {
    DWORD escritos = 0;
    const auto tamanho = static_cast<DWORD>(arquivo.bytes.size());
    if (WriteFile(aberto.Valor(), arquivo.bytes.data(), tamanho, &escritos, nullptr) != 0 && escritos == tamanho &&
        FlushFileBuffers(aberto.Valor()) != 0) {
        return true;
    }
    erro = Formatar("não foi possível gravar {} (erro {})", ParaUtf8(arquivo.caminho.native()), GetLastError());
    return false;
}

}  // namespace

BytesSecretos::~BytesSecretos() {
    SecureZeroMemory(bytes_.data(), bytes_.size());
}

std::span<std::uint8_t> BytesSecretos::Bytes() {
    return {reinterpret_cast<std::uint8_t*>(bytes_.data()), bytes_.size()};
}

bool BytesSecretos::Ler(const std::filesystem::path& caminho, std::size_t tamanho, std::string& erro) {
    InfoArquivo info;
    const std::string nome = ParaUtf8(caminho.native());
    if (!LerInfoArquivo(caminho, info)) {
        erro = Formatar("{}: não foi possível abrir (erro {})", nome, GetLastError());
    } else if (info.Pasta()) {
        erro = Formatar("{}: é uma pasta", nome);
    } else if (info.tamanho != tamanho) {
        erro = Formatar("{}: tem {} bytes, o tamanho certo é {}", nome, info.tamanho, tamanho);
    } else if (!LerArquivoInteiro(caminho, bytes_) || bytes_.size() != tamanho) {
        erro = Formatar("{}: não foi possível ler (erro {})", nome, GetLastError());
    } else {
        return true;
    }
    return false;
}

bool CriarArquivos(std::span<const ArquivoNovo> arquivos, std::string& erro) {
    std::vector<HandleArquivo> abertos;
    bool ok = true;
    for (std::size_t i = 0; ok && i < arquivos.size(); ++i)
        ok = Criar(arquivos[i], abertos, erro);
    for (std::size_t i = 0; ok && i < arquivos.size(); ++i)
        ok = Escrever(abertos[i], arquivos[i], erro);
    if (ok) return true;
    // Only those that this call made: a file is ours once its handle is.
    for (std::size_t i = 0; i < abertos.size(); ++i) {
        abertos[i].Fechar();
        DeleteFileW(arquivos[i].caminho.c_str());
    }
    return false;
}

}  // namespace zu::launcher::forjal
