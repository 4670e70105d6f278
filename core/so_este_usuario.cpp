#include "core/so_este_usuario.h"

#include "core/handle.h"

namespace zu::launcher {

SoEsteUsuario::SoEsteUsuario(DWORD direitos) {
    HandleKernel token;
    DWORD tamanho = 0;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Receber()) == 0) return;
    GetTokenInformation(token.Valor(), TokenUser, nullptr, 0, &tamanho);
    usuario_.resize(tamanho);
    if (GetTokenInformation(token.Valor(), TokenUser, usuario_.data(), tamanho, &tamanho) == 0) return;
    const PSID sid = reinterpret_cast<const TOKEN_USER*>(usuario_.data())->User.Sid;
    lista_.resize(sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) + GetLengthSid(sid));
    auto* const lista = reinterpret_cast<ACL*>(lista_.data());
    pronto_ = InitializeAcl(lista, static_cast<DWORD>(lista_.size()), ACL_REVISION) != 0 &&
              AddAccessAllowedAce(lista, ACL_REVISION, direitos, sid) != 0 &&
              InitializeSecurityDescriptor(&descritor_, SECURITY_DESCRIPTOR_REVISION) != 0 &&
              SetSecurityDescriptorDacl(&descritor_, TRUE, lista, FALSE) != 0 &&
              SetSecurityDescriptorControl(&descritor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0;
    atributos_ = {sizeof atributos_, &descritor_, FALSE};
}

}  // namespace zu::launcher
