// The script that cuts the site's page down to one element.
#pragma once

#include <string>
#include <string_view>

namespace zu::launcher {

// The script (UTF-8) that, run before a document of the page exists, keeps only the first element that the CSS selector
// matches once the document has been read, filling the view on black without scroll bars. A page without such an
// element stays as it is.
std::string ScriptRecorte(std::string_view seletor);

}  // namespace zu::launcher
