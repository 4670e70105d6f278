// What earlier runs left below the game folder.
#pragma once

namespace zu::launcher::update {
struct UpdateList;
}

namespace zu::launcher {

// Deletes the unfinished and the parked downloads whose file is no longer in the list. Folders of the player's own, and
// links to other places, are not looked into.
void ApagarSobras(const update::UpdateList& lista);

}  // namespace zu::launcher
