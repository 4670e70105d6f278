// A security descriptor for a new object that this process's user alone is to have.
#pragma once

#include <windows.h>

#include <vector>

namespace zu::launcher {

class SoEsteUsuario {
 public:
    // Grants what `direitos` says, and nothing that the object's folder would pass on.
    explicit SoEsteUsuario(DWORD direitos);
    SoEsteUsuario(const SoEsteUsuario&) = delete;
    SoEsteUsuario& operator=(const SoEsteUsuario&) = delete;

    // Null when the descriptor could not be made.
    SECURITY_ATTRIBUTES* Atributos() { return pronto_ ? &atributos_ : nullptr; }

 private:
    std::vector<char> usuario_;
    std::vector<char> lista_;
    SECURITY_DESCRIPTOR descritor_{};
    SECURITY_ATTRIBUTES atributos_{};
    bool pronto_ = false;
};

}  // namespace zu::launcher
