#include "tools/forjal/forjal.h"

#include <algorithm>
#include <array>

#include "core/formato.h"
#include "core/utf16.h"
#include "tools/forjal/comandos.h"
#include "tools/forjal/opcoes.h"

namespace zu::launcher::forjal {
namespace {

constexpr std::array kOpcoesChaves{RegraDeOpcao{L"--saida", Valor::kNaoVazio, Vezes::kUma}};

constexpr std::array kOpcoesSelar{
    RegraDeOpcao{L"--segredo", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--saida", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--nome", Valor::kTexto, Vezes::kAteUma},
    RegraDeOpcao{L"--update", Valor::kTexto, Vezes::kAteUma},
    RegraDeOpcao{L"--sem-update", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--site", Valor::kTexto, Vezes::kAteUma},
    RegraDeOpcao{L"--seletor", Valor::kTexto, Vezes::kAteUma},
    RegraDeOpcao{L"--registro", Valor::kTexto, Vezes::kAteUma},
};

constexpr std::array kOpcoesAbrir{RegraDeOpcao{L"--segredo", Valor::kNaoVazio, Vezes::kUma}};

constexpr std::array kOpcoesPublicar{
    RegraDeOpcao{L"--cliente", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--saida", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--chave", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--seq", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--versao", Valor::kTexto, Vezes::kAteUma},
    RegraDeOpcao{L"--chave-assets", Valor::kTexto, Vezes::kAteUma},
    RegraDeOpcao{L"--partes-mib", Valor::kNaoVazio, Vezes::kAteUma},
    RegraDeOpcao{L"--remover", Valor::kNaoVazio, Vezes::kVarias},
    RegraDeOpcao{L"--remover-de", Valor::kNaoVazio, Vezes::kVarias},
    RegraDeOpcao{L"--remover-ausentes", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--muitas-remocoes", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--excluir", Valor::kNaoVazio, Vezes::kVarias},
    RegraDeOpcao{L"--sem-exclusoes", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--chave-anterior", Valor::kNaoVazio, Vezes::kAteUma},
    RegraDeOpcao{L"--validade-dias", Valor::kNaoVazio, Vezes::kAteUma},
    RegraDeOpcao{L"--confiar-na-data", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--sem-blocos", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--simular", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--limpar", Valor::kNenhum, Vezes::kAteUma},
};

constexpr std::array kOpcoesContinuar{
    RegraDeOpcao{L"--continuar", Valor::kNenhum, Vezes::kUma},
    RegraDeOpcao{L"--saida", Valor::kNaoVazio, Vezes::kUma},
};

constexpr std::array kOpcoesSoAssinar{
    RegraDeOpcao{L"--so-assinar", Valor::kNenhum, Vezes::kUma},
    RegraDeOpcao{L"--saida", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--chave", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--chave-anterior", Valor::kNaoVazio, Vezes::kAteUma},
    RegraDeOpcao{L"--validade-dias", Valor::kNaoVazio, Vezes::kUma},
};

constexpr std::array kOpcoesConferir{
    RegraDeOpcao{L"--pub", Valor::kNaoVazio, Vezes::kUma},
    RegraDeOpcao{L"--publicado", Valor::kNaoVazio, Vezes::kAteUma},
    RegraDeOpcao{L"--url", Valor::kNaoVazio, Vezes::kAteUma},
    RegraDeOpcao{L"--completo", Valor::kNenhum, Vezes::kAteUma},
    RegraDeOpcao{L"--amostra", Valor::kNaoVazio, Vezes::kAteUma},
};

constexpr std::string_view kAjudaPublicar =
    "Forjal publicar --cliente=PASTA --saida=PASTA --chave=ARQUIVO --seq=N [OPÇÃO]...\n"
    "  Publica a pasta do cliente: prepara e confere tudo, depois troca de uma vez só o que mudou, a lista assinada\n"
    "  por último. Quem está baixando pela lista anterior ainda acha o que ela cita.\n"
    "  --chave=ARQUIVO            a lista.chave\n"
    "  --chave-anterior=ARQUIVO   a lista.pub com que a lista publicada foi assinada, se não foi com --chave\n"
    "  --seq=N                    número da publicação, nunca menor que o da anterior\n"
    "  --versao=TEXTO             versão que a lista anuncia\n"
    "  --chave-assets=TEXTO       chave dos assets que a lista leva\n"
    "  --validade-dias=N          por quantos dias a lista vale; sem ela, para sempre\n"
    "  --partes-mib=N             divide arquivos com mais de N MiB em partes de N MiB (até 999 partes)\n"
    "  --excluir=PADRÃO           o que não é do cliente, com * e ?; pode ser repetida\n"
    "  --sem-exclusoes            publica também .git/ .svn/ Thumbs.db desktop.ini .DS_Store *.pdb\n"
    "  --remover=CAMINHO          arquivo que os jogadores não devem mais ter; pode ser repetida\n"
    "  --remover-de=ARQUIVO       um texto com um desses caminhos por linha\n"
    "  --remover-ausentes         também o que a lista publicada cita e o cliente não tem mais\n"
    "  --muitas-remocoes          aceita que mais de um décimo dos arquivos da lista suma\n"
    "  --confiar-na-data          não lê o arquivo que tem o tamanho e a data de quando foi publicado\n"
    "  --sem-blocos               sem os índices CAMINHO.blocos, com que os jogadores baixam só o que mudou num "
    "arquivo\n"
    "  --simular                  confere e resume tudo sem gravar nada\n"
    "  --limpar                   apaga da saída o que o Forjal publicou antes e nem a lista nova nem a anterior "
    "citam\n"
    "Forjal publicar --continuar --saida=PASTA\n"
    "  Termina uma publicação interrompida no meio da troca.\n"
    "Forjal publicar --so-assinar --saida=PASTA --chave=ARQUIVO --validade-dias=N [--chave-anterior=ARQUIVO]\n"
    "  Renova a validade da lista publicada, sem tocar nos arquivos.";

struct Comando {
    std::wstring_view nome;
    Sintaxe sintaxe;
    int (*rodar)(const Opcoes& opcoes, Saida& saida);
    std::string_view ajuda;
    std::wstring_view modo = {};  // the option that makes it another command, which comes before the plain one
};

constexpr std::array<Comando, 7> kComandos{{
    {L"chaves",
     {kOpcoesChaves},
     RodarChaves,
     "Forjal chaves --saida=PASTA\n"
     "  Gera as chaves do servidor na pasta: lista.chave (privada, assina a lista), lista.pub (vai no "
     "launcher) e\n"
     "  selo.segredo (sela o Launcher.emu e vai no launcher). Nunca sobrescreve uma chave."},
    {L"selar",
     {kOpcoesSelar},
     RodarSelar,
     "Forjal selar --segredo=ARQUIVO --saida=ARQUIVO [--nome=TEXTO] [--update=URL] [--sem-update] "
     "[--site=URL]\n"
     "             [--seletor=TEXTO] [--registro=URL]\n"
     "  Gera o arquivo de configuração do launcher (Launcher.emu). Os limites são em bytes, em UTF-8.\n"
     "  --segredo=ARQUIVO   o selo.segredo\n"
     "  --nome=TEXTO        nome do launcher (até 31)\n"
     "  --update=URL        endereço do servidor de atualização (até 127)\n"
     "  --sem-update        guarda o endereço com a atualização automática desligada\n"
     "  --site=URL          página mostrada na janela (até 127)\n"
     "  --seletor=TEXTO     seletor do elemento da página (até 63)\n"
     "  --registro=URL      página de cadastro de contas (até 127)"},
    {L"abrir",
     {kOpcoesAbrir, "o arquivo a abrir"},
     RodarAbrir,
     "Forjal abrir --segredo=ARQUIVO ARQUIVO\n"
     "  Mostra o que há num Launcher.emu, ou por que o launcher o recusa."},
    {L"publicar", {kOpcoesContinuar}, RodarContinuar, kAjudaPublicar, L"--continuar"},
    {L"publicar", {kOpcoesSoAssinar}, RodarSoAssinar, kAjudaPublicar, L"--so-assinar"},
    {L"publicar", {kOpcoesPublicar}, RodarPublicar, kAjudaPublicar},
    {L"conferir",
     {kOpcoesConferir},
     RodarConferir,
     "Forjal conferir --pub=ARQUIVO [--publicado=PASTA] [--url=URL [--completo] [--amostra=N]]\n"
     "  Confere o que foi publicado: a assinatura da lista e cada arquivo e parte.\n"
     "  --pub=ARQUIVO       a lista.pub\n"
     "  --publicado=PASTA   a pasta publicada\n"
     "  --url=URL           o servidor no ar, como os jogadores o veem; com --publicado, também se a lista é a mesma\n"
     "  --completo          baixa e confere cada byte, em vez de uma faixa de cada arquivo\n"
     "  --amostra=N         só N arquivos, sorteados"},
}};

constexpr std::string_view kFimDaAjuda = "Códigos de saída: 0 feito; 1 recusado ou diferente; 2 uso errado.";

std::string AjudaGeral() {
    std::string texto = "Forjal: chaves, configuração e publicação do ZuLauncher.\n";
    for (const Comando& comando : kComandos)
        if (comando.modo.empty()) texto += Formatar("\n{}\n", comando.ajuda);
    return Formatar("{}\n{}", texto, kFimDaAjuda);
}

int RodarComando(const Comando& comando, std::span<const std::wstring> argumentos, Saida& saida) {
    if (std::ranges::find(argumentos, L"--ajuda") != argumentos.end()) {
        saida.Linha(comando.ajuda);
        saida.Linha(kFimDaAjuda);
        return kFeito;
    }
    Opcoes opcoes;
    std::string erro;
    const int codigo =
        opcoes.Ler(argumentos, comando.sintaxe, erro) ? comando.rodar(opcoes, saida) : Falhar(saida, kUsoErrado, erro);
    if (codigo == kUsoErrado) saida.Erro(Formatar("Veja: Forjal {} --ajuda", ParaUtf8(comando.nome)));
    return codigo;
}

}  // namespace

int RodarForjal(std::span<const std::wstring> argumentos, Saida& saida) {
    if (argumentos.empty()) return Falhar(saida, kUsoErrado, AjudaGeral());
    const std::wstring& nome = argumentos.front();
    if (nome == L"--ajuda") {
        saida.Linha(AjudaGeral());
        return kFeito;
    }
    const auto pedido = [&](const Comando& comando) {
        return comando.nome == nome &&
               (comando.modo.empty() || std::ranges::find(argumentos, comando.modo) != argumentos.end());
    };
    const auto comando = std::ranges::find_if(kComandos, pedido);
    if (comando == kComandos.end()) {
        return Falhar(saida, kUsoErrado, Formatar("comando desconhecido: {}\nVeja: Forjal --ajuda", ParaUtf8(nome)));
    }
    return RodarComando(*comando, argumentos.subspan(1), saida);
}

}  // namespace zu::launcher::forjal
