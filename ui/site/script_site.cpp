#include "ui/site/script_site.h"

namespace zu::launcher {
namespace {

constexpr std::string_view kAntesDoSeletor = "(function(){var sel='";

// The style goes in with the box, so that a page without the element keeps its own looks.
constexpr std::string_view kDepoisDoSeletor =
    "';var css=document.createElement('style');css.textContent='"
    "html,body{margin:0!important;padding:0!important;width:100%!important;height:100%!important;"
    "min-width:0!important;overflow:hidden!important;background:#000!important}"
    "body>*:not(#tv-launcher-box){display:none!important}"
    "#tv-launcher-box{position:fixed;left:0;top:0;width:100vw;height:100vh;display:block!important}"
    "#tv-launcher-box>*{width:100%!important;height:100%!important;margin:0!important;max-width:none!important;"
    "aspect-ratio:auto!important;border:0!important;box-shadow:none!important}';"
    "function go(){var el=document.querySelector(sel);if(!el)return;"
    "var box=document.createElement('div');box.id='tv-launcher-box';"
    "document.body.appendChild(box);box.appendChild(el);document.head.appendChild(css);}"
    "if(document.readyState==='loading')document.addEventListener('DOMContentLoaded',go);else go();})();";

}  // namespace

std::string ScriptRecorte(std::string_view seletor) {
    std::string script(kAntesDoSeletor);
    for (const char c : seletor) {
        if (c == '\\' || c == '\'') script.push_back('\\');
        script.push_back(c);
    }
    script += kDepoisDoSeletor;
    return script;
}

}  // namespace zu::launcher
