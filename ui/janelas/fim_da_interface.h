// What shows and hides the launcher's windows and what ends their run, also out of the loops of messages that the
// system runs by itself: an open menu, a message box, a window being dragged. UI thread only.
#pragma once

namespace zu::launcher {

// Shows the launcher's windows and brings the topmost to the front, or hides them. What the player has closed stays
// hidden.
void MostrarLauncher(bool visivel);

// Another start of the launcher wants to see this one: a wish to close that was put off is taken back.
void AtenderOutraInstancia();

// Ends the interface: every loop of messages returns.
void PedirFim();
// The same, and what the controller has under way is cancelled.
void CancelarEPedirFim();

// The player closes the launcher. While a game is starting, which the game confirms to this process, the windows only
// hide and the end comes after that. A second time it comes at once.
void FecharLauncher();
// The end that `FecharLauncher` has put off, once nothing stands against it any more.
void ConcluirFechamento();

// The session ends: the process may be gone when this returns, so everything is saved by then.
void EncerrarComASessao();

}  // namespace zu::launcher
