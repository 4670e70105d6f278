#include <windows.h>
// after windows.h
#include <aclapi.h>
#include <sddl.h>

#include "app/selo.h"
#include "core/chaves.h"
#include "tests/suporte/oficina.h"
#include "tests/suporte/recusa.h"

namespace zu::launcher::forjal {
namespace {

// Whether the access list names everybody.
bool TodosPodem(const std::filesystem::path& arquivo) {
    PSECURITY_DESCRIPTOR descritor = nullptr;
    LPWSTR texto = nullptr;
    GetNamedSecurityInfoW(arquivo.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr,
                          nullptr, &descritor);
    ConvertSecurityDescriptorToStringSecurityDescriptorW(descritor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &texto,
                                                         nullptr);
    const bool todos = std::wstring_view(texto).find(L";;;WD)") != std::wstring_view::npos;
    LocalFree(texto);
    LocalFree(descritor);
    return todos;
}

TEST_F(Forjal, ChavesNuncaSobrescrevemESaoSoDoDono) {
    ASSERT_EQ(Rodar({"chaves", "--saida=@\\k"}), kFeito) << saida_;
    EXPECT_TRUE(TodosPodem(pasta_ / "k/lista.pub"));
    EXPECT_FALSE(TodosPodem(pasta_ / "k/lista.chave") || TodosPodem(pasta_ / "k/selo.segredo"));
    Apagar("k");
    teste::recusa = {.chamada = "FlushFileBuffers", .erro = ERROR_DISK_FULL};
    Recusa({"chaves", "--saida=@\\k"}, "não foi possível gravar");
    teste::recusa = {};
    for (const std::string nome : {"lista.chave", "lista.pub", "selo.segredo"}) {
        Apagar("k");
        pasta_.Escrever("k/" + nome, "minha");
        Recusa({"chaves", "--saida=@\\k"}, nome);
    }
}

TEST_F(Forjal, SelarAteOLimiteDeCadaCampo) {
    const std::tuple<std::string, std::size_t, std::string CamposSelados::*> casos[]{
        {"--nome=", 31, &CamposSelados::nome},
        {"--update=", 127, &CamposSelados::update},
        {"--site=", 127, &CamposSelados::site},
        {"--seletor=", 63, &CamposSelados::seletor},
        {"--registro=", 127, &CamposSelados::registro}};
    std::vector<std::string> selar{"selar", "--segredo=#\\selo.segredo", "--saida=@\\Launcher.emu", ""};
    for (const auto& [opcao, limite, campo] : casos) {
        // The limit counts bytes: the first letter takes two.
        const std::string inicio = limite == 127 ? "http://ç" : "ç";
        const std::string cabe = inicio + std::string(limite - inicio.size(), 'x');
        selar.back() = opcao + cabe;
        ASSERT_EQ(Rodar(selar), kFeito) << saida_;
        CorpoSelado corpo{};
        std::string recusa;
        ASSERT_TRUE(AbrirSelado(pasta_.Ler("Launcher.emu"), SegredoDoSelo(), corpo, recusa)) << recusa;
        EXPECT_EQ(LerCampos(corpo).*campo, cabe);
        selar.back() += "x";
        Recusa(selar, "o limite é " + std::to_string(limite), kUsoErrado);
    }
}

TEST_F(Forjal, AbrirMostraOuRecusaComoOLauncher) {
    std::vector<std::string> selar{"selar", "--segredo=#\\selo.segredo", "--saida=@\\Launcher.emu", "--nome=Zu Já"};
    Diz(Rodar(selar), kFeito, "Aviso: sem --update=");
    for (const std::string automatico : {"sim", "não"}) {
        EXPECT_EQ(Rodar({"abrir", "--segredo=#\\selo.segredo", "@\\Launcher.emu"}), kFeito);
        EXPECT_TRUE(saida_.Tem("nome: Zu Já\n") && saida_.Tem("update automático: " + automatico + "\n")) << saida_;
        selar.emplace_back("--sem-update");
        ASSERT_EQ(Rodar(selar), kFeito) << "a sealed file is replaced" << saida_;
        selar.pop_back();
    }
    std::string selado = pasta_.Ler("Launcher.emu");
    selado[100] = static_cast<char>(selado[100] ^ 1);
    pasta_.Escrever("mexido", selado);
    Recusa({"abrir", "--segredo=#\\selo.segredo", "@\\mexido"}, "arquivo adulterado");
    const auto chavesAntes = chaves_.Tudo();
    for (const std::string alvo : {"#\\lista.chave", "#\\selo.segredo", "@\\mexido", "@"})
        Recusa({"selar", "--segredo=#\\selo.segredo", "--saida=" + alvo}, "já existe");
    EXPECT_EQ(chaves_.Tudo(), chavesAntes);
}

TEST_F(Forjal, UsoErradoDizAOpcaoENaoGravaNada) {
    pasta_.Escrever("cliente/a", "a");
    pasta_.Escrever("curta.chave", "curta");
    pasta_.Escrever("remover.txt", "\xEF\xBB\xBFok\r\n\r\n../fora\r\n");
    pasta_.Escrever("lixo.chave", std::string(1755, 'x'));
    pasta_.Escrever("cliente/lista.chave", chaves_.Ler("lista.chave"));
    const auto publicar = [](const std::vector<std::string>& mais) { return ParaPublicar(1, mais); };
    const std::vector<std::pair<std::vector<std::string>, std::string>> casos{
        {{}, "Forjal chaves"},
        {{"Chaves", "--saida=@\\k"}, "Chaves"},
        {{"chaves"}, "--saida="},
        {{"chaves", "--saida"}, "--saida"},
        {{"chaves", "--saida="}, "--saida"},
        {{"chaves", "--SAIDA=@\\k"}, "--SAIDA"},
        {{"chaves", "--saida=@\\k", "--saida=@\\k2"}, "--saida"},
        {{"chaves", "--saida=@\\k", "sobra"}, "sobra"},
        {{"selar", "--segredo=#\\selo.segredo", "--saida=@\\e", "--sem-update=1"}, "--sem-update"},
        {{"selar", "--segredo=#\\selo.segredo", "--saida=@\\e", "--update=update.example/"}, "--update"},
        {{"selar", "--segredo=#\\selo.segredo", "--saida=@\\e", "--site=javascript:1"}, "--site"},
        {{"selar", "--segredo=#\\selo.segredo", "--saida=@\\e", "--update=http:///a"}, "falta o servidor"},
        {{"selar", "--segredo=#\\selo.segredo", "--saida=@\\e", "--update=https://:80/"}, "falta o servidor"},
        {{"selar", "--segredo=#\\selo.segredo", "--saida=@\\e", "--registro=http://a/b c"}, "espaços"},
        {{"selar", "--segredo=#\\lista.pub", "--saida=@\\e"}, "32"},
        {{"abrir", "--segredo=#\\selo.segredo"}, "arquivo"},
        {{"abrir", "--segredo=#\\selo.segredo", "um", "outro"}, "outro"},
        {{"conferir", "--publicado=@\\cliente", "--pub=#\\lista.pub", "--completo"}, "--url="},
        {{"conferir", "--publicado=@\\cliente", "--pub=#\\selo.segredo"}, "411"},
        {{"conferir", "--url=http://a/", "--pub=#\\lista.pub", "--amostra=0"}, "--amostra"},
        {{"conferir", "--publicado=@\\falta", "--pub=#\\lista.pub"}, "--publicado"},
        {{"publicar", "--cliente=@\\cliente", "--saida=@\\saida", "--chave=#\\lista.chave"}, "--seq="},
        {publicar({"--seq=-1"}), "--seq"},
        {publicar({"--seq=9223372036854775808"}), "9223372036854775807"},
        {publicar({"--partes-mib=0"}), "--partes-mib"},
        {publicar({"--versao=1\t0"}), "--versao"},
        {publicar({"--chave-assets=a\nb"}), "--chave-assets"},
        {publicar({"--remover=ok", "--remover=../fora"}), "--remover: \"../fora\""},
        {publicar({"--remover=cache/x"}), "--remover: \"cache/x\""},
        {publicar({"--remover-de=@\\remover.txt"}), "--remover-de: \"../fora\""},
        {publicar({"--validade-dias=0"}), "--validade-dias"},
        {{"publicar", "--continuar", "--saida=@\\falta"}, "--saida"},
        {{"publicar", "--so-assinar", "--saida=@\\cliente", "--chave=#\\lista.chave"}, "--validade-dias="},
        {publicar({"--cliente=@\\falta"}), "--cliente"},
        {publicar({"--saida=@\\cliente"}), "--saida"},
        {publicar({"--saida=@\\CLIENTE\\pub"}), "--saida"},
        {publicar({"--saida=@"}), "--saida"},
        {publicar({"--saida=@\\curta.chave"}), "--saida"},
        {publicar({"--chave=@\\curta.chave"}), "1755"},
        {publicar({"--chave=@\\lixo.chave"}), "--chave"},
        {publicar({"--chave=@\\cliente\\lista.chave"}), "--chave"}};
    for (const auto& [argumentos, parte] : casos)
        Recusa(argumentos, parte, kUsoErrado);
    EXPECT_EQ(Rodar({"selar", "--ajuda"}), kFeito);
    EXPECT_TRUE(saida_.Tem("Forjal selar") && saida_.erros.empty());
}

}  // namespace
}  // namespace zu::launcher::forjal
