// The game's options file, whole.
#pragma once

#include <string>

#include "core/formato.h"
#include "game/opcoes.h"

namespace zu::launcher::teste {

// As the game writes it: with every key that the launcher knows, and keys and sections of the game's own before,
// between and behind them. (No empty lines: Wine drops them.)
inline std::string TextoDoIni(const OpcoesJogo& o = {}) {
    return Formatar(
        "; opções do jogo\r\n[Idioma]\r\nNome=ação\r\n"
        "[Video]\r\nDlss=3\r\nApi={}\r\nVSync={}\r\nSombras=ultra alta\r\nFpsLimit={}\r\n"
        "[Window]\r\nX=10\r\nWindowMode={}\r\nBorderless={}\r\nResolution={}\r\nTitulo=Zu é Zu\r\n"
        "[Sound]\r\nSoundLevel={}\r\nVoz=1\r\nMusicLevel={}\r\n"
        "[Launcher]\r\nFecharAoJogar={}\r\n[Teclas]\r\nPular=32\r\n",
        o.api, o.vsync, o.fpsLimit, o.windowMode, o.borderless, o.resolution, o.soundLevel, o.musicLevel,
        o.fecharAoJogar);
}

}  // namespace zu::launcher::teste
