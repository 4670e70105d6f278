#include <algorithm>

#include "app/selo.h"
#include "tests/suporte/oficina.h"

namespace zu::launcher::forjal {
namespace {

// Whether the access list lets everybody do anything with the file.
bool TodosPodem(const std::filesystem::path& arquivo) {
    BYTE descritor[1024];
    DWORD tamanho = 0;
    BOOL tem = FALSE;
    BOOL herdada = FALSE;
    PACL lista = nullptr;
    if (GetFileSecurityW(arquivo.c_str(), DACL_SECURITY_INFORMATION, descritor, sizeof descritor, &tamanho) == 0 ||
        GetSecurityDescriptorDacl(descritor, &tem, &lista, &herdada) == 0 || tem == FALSE || lista == nullptr) {
        return true;
    }
    for (DWORD i = 0; i < lista->AceCount; ++i) {
        void* entrada = nullptr;
        if (GetAce(lista, i, &entrada) != 0 &&
            IsWellKnownSid(&static_cast<ACCESS_ALLOWED_ACE*>(entrada)->SidStart, WinWorldSid) != 0) {
            return true;
        }
    }
    return false;
}

TEST_F(Forjal, ChavesNuncaSobrescrevemESaoSoDoDono) {
    EXPECT_EQ(chaves_->Ler("lista.chave").size(), 1755U);
    EXPECT_EQ(chaves_->Ler("lista.pub").size(), 411U);
    EXPECT_EQ(chaves_->Ler("selo.segredo").size(), 32U);
    EXPECT_TRUE(TodosPodem(*chaves_ / "lista.pub"));
    EXPECT_FALSE(TodosPodem(*chaves_ / "lista.chave") || TodosPodem(*chaves_ / "selo.segredo"));
    for (const std::string nome : {"lista.chave", "lista.pub", "selo.segredo"}) {
        pasta_.Escrever("k/" + nome, "minha");
        const auto antes = pasta_.Tudo();
        EXPECT_EQ(Rodar({"chaves", "--saida=@\\k"}), kRecusado);
        EXPECT_TRUE(Contem(saida_.erros, nome)) << saida_.erros;
        EXPECT_EQ(pasta_.Tudo(), antes);
        Apagar("k");
    }
}

TEST_F(Forjal, SelarAteOLimiteDeCadaCampo) {
    const std::vector<std::tuple<std::string, std::size_t, std::string CamposSelados::*>> casos{
        {"--nome", 31, &CamposSelados::nome},
        {"--update", 127, &CamposSelados::update},
        {"--site", 127, &CamposSelados::site},
        {"--seletor", 63, &CamposSelados::seletor},
        {"--registro", 127, &CamposSelados::registro}};
    SegredoSelo segredo{};
    std::ranges::copy(chaves_->Ler("selo.segredo"), segredo.begin());
    for (const auto& [opcao, limite, campo] : casos) {
        // The limit counts bytes: the first letter takes two.
        const std::string inicio = limite == 127 ? "http://ç" : "ç";
        const std::string cabe = inicio + std::string(limite - inicio.size(), 'x');
        ASSERT_EQ(Rodar({"selar", "--segredo=#\\selo.segredo", "--saida=@\\Launcher.emu", opcao + "=" + cabe}), kFeito)
            << saida_.erros;
        CorpoSelado corpo{};
        std::string recusa;
        ASSERT_TRUE(AbrirSelado(pasta_.Ler("Launcher.emu"), segredo, corpo, recusa)) << recusa;
        EXPECT_EQ(LerCampos(corpo).*campo, cabe);
        Apagar("Launcher.emu");

        EXPECT_EQ(Rodar({"selar", "--segredo=#\\selo.segredo", "--saida=@\\Launcher.emu", opcao + "=" + cabe + "x"}),
                  kUsoErrado);
        EXPECT_TRUE(Contem(saida_.erros, opcao) && Contem(saida_.erros, std::to_string(limite))) << saida_.erros;
        EXPECT_TRUE(pasta_.Tudo().empty());
    }
}

TEST_F(Forjal, AbrirMostraOuRecusaComoOLauncher) {
    ASSERT_EQ(Rodar({"selar", "--segredo=#\\selo.segredo", "--saida=@\\Launcher.emu", "--nome=Zu Já",
                     "--site=http://s/", "--update=http://u/", "--seletor=.x", "--registro=http://r/"}),
              kFeito);
    EXPECT_EQ(Rodar({"abrir", "--segredo=#\\selo.segredo", "@\\Launcher.emu"}), kFeito);
    for (const char* texto : {"nome: Zu Já\n", "update: http://u/\n", "site: http://s/\n", "registro: http://r/\n",
                              "update automático: sim\n"}) {
        EXPECT_TRUE(Contem(saida_.linhas, texto)) << texto << saida_.linhas;
    }
    ASSERT_EQ(
        Rodar({"selar", "--segredo=#\\selo.segredo", "--saida=@\\Launcher.emu", "--update=http://u/", "--sem-update"}),
        kFeito);
    EXPECT_EQ(Rodar({"abrir", "--segredo=#\\selo.segredo", "@\\Launcher.emu"}), kFeito);
    EXPECT_TRUE(Contem(saida_.linhas, "update: http://u/\n") && Contem(saida_.linhas, "update automático: não\n"));

    std::string selado = pasta_.Ler("Launcher.emu");
    pasta_.Escrever("curto", selado.substr(1));
    EXPECT_EQ(Rodar({"abrir", "--segredo=#\\selo.segredo", "@\\curto"}), kRecusado);
    EXPECT_TRUE(Contem(saida_.erros, "tamanho inválido (584 bytes, esperado 585)")) << saida_.erros;
    selado[100] = static_cast<char>(selado[100] ^ 1);
    pasta_.Escrever("mexido", selado);
    EXPECT_EQ(Rodar({"abrir", "--segredo=#\\selo.segredo", "@\\mexido"}), kRecusado);
    EXPECT_TRUE(Contem(saida_.erros, "arquivo adulterado")) << saida_.erros;
}

TEST_F(Forjal, SelarSoSubstituiUmArquivoSelado) {
    const auto selar = [this](const std::string& saida) {
        return Rodar({"selar", "--segredo=#\\selo.segredo", "--saida=" + saida});
    };
    const auto chavesAntes = chaves_->Tudo();
    pasta_.Escrever("do tamanho", std::string(kTamanhoSelado, 'x'));
    for (const std::string saida : {"#\\lista.chave", "#\\selo.segredo", "@\\do tamanho", "@"}) {
        EXPECT_EQ(selar(saida), kRecusado) << saida;
    }
    EXPECT_EQ(chaves_->Tudo(), chavesAntes);
    EXPECT_EQ(pasta_.Ler("do tamanho"), std::string(kTamanhoSelado, 'x'));
    for (int vez = 0; vez < 2; ++vez)
        EXPECT_EQ(selar("@\\Launcher.emu"), kFeito) << saida_.erros;
    EXPECT_TRUE(Contem(saida_.linhas, "Aviso: sem --update=")) << saida_.linhas;
}

TEST_F(Forjal, UsoErradoDizAOpcaoENaoGravaNada) {
    pasta_.Escrever("cliente/a", "a");
    pasta_.Escrever("curta.chave", "curta");
    pasta_.Escrever("remover.txt", "\xEF\xBB\xBFok\r\n\r\n../fora\r\n");
    pasta_.Escrever("lixo.chave", std::string(1755, 'x'));
    pasta_.Escrever("cliente/lista.chave", chaves_->Ler("lista.chave"));
    const auto publicar = [](const std::vector<std::string>& mais, const std::string& sem = "") {
        std::vector<std::string> todos{"publicar"};
        for (const std::string base :
             {"--cliente=@\\cliente", "--saida=@\\saida", "--chave=#\\lista.chave", "--seq=1"}) {
            if (sem.empty() || !base.starts_with(sem)) todos.push_back(base);
        }
        todos.insert(todos.end(), mais.begin(), mais.end());
        return todos;
    };
    const std::vector<std::pair<std::vector<std::string>, std::string>> casos{
        {{}, "Forjal chaves"},
        {{"forjar"}, "forjar"},
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
        {{"selar", "--segredo=@\\falta", "--saida=@\\e"}, "--segredo"},
        {{"abrir", "--segredo=#\\selo.segredo"}, "arquivo"},
        {{"conferir", "--publicado=@\\cliente", "--pub=#\\selo.segredo"}, "411"},
        {{"conferir", "--publicado=@\\falta", "--pub=#\\lista.pub"}, "--publicado"},
        {publicar({}, "--seq"), "--seq="},
        {publicar({"--seq=-1"}, "--seq"), "--seq"},
        {publicar({"--seq=9223372036854775808"}, "--seq"), "9223372036854775807"},
        {publicar({"--seq=1x"}, "--seq"), "--seq"},
        {publicar({"--partes-mib=0"}), "--partes-mib"},
        {publicar({"--versao=1\t0"}), "--versao"},
        {publicar({"--chave-assets=a\nb"}), "--chave-assets"},
        {publicar({"--remover=ok", "--remover=../fora"}), "--remover: \"../fora\""},
        {publicar({"--remover=cache/x"}), "--remover: \"cache/x\""},
        {publicar({"--remover-de=@\\remover.txt"}), "--remover-de: \"../fora\""},
        {publicar({"--validade-dias=0"}), "--validade-dias"},
        {publicar({"--chave-anterior=#\\selo.segredo"}), "411"},
        {{"publicar", "--continuar", "--saida=@\\falta"}, "--saida"},
        {{"publicar", "--so-assinar", "--saida=@\\cliente", "--chave=#\\lista.chave"}, "--validade-dias="},
        {publicar({"--cliente=@\\falta"}, "--cliente"), "--cliente"},
        {publicar({"--saida=@\\cliente"}, "--saida"), "--saida"},
        {publicar({"--saida=@\\CLIENTE\\pub"}, "--saida"), "--saida"},
        {publicar({"--saida=@"}, "--saida"), "--saida"},
        {publicar({"--saida=@\\curta.chave"}, "--saida"), "--saida"},
        {publicar({"--chave=@\\curta.chave"}, "--chave"), "1755"},
        {publicar({"--chave=@\\lixo.chave"}, "--chave"), "--chave"},
        {publicar({"--chave=@\\cliente\\lista.chave"}, "--chave"), "--chave"},
    };
    const auto antes = pasta_.Tudo();
    const auto chavesAntes = chaves_->Tudo();
    for (const auto& [argumentos, parte] : casos) {
        EXPECT_EQ(Rodar(argumentos), kUsoErrado) << testing::PrintToString(argumentos);
        EXPECT_TRUE(Contem(saida_.erros, parte)) << testing::PrintToString(argumentos) << saida_.erros;
        EXPECT_EQ(pasta_.Tudo(), antes) << testing::PrintToString(argumentos);
        EXPECT_FALSE(pasta_.Tem("saida"));
    }
    EXPECT_EQ(chaves_->Tudo(), chavesAntes);
    for (const std::vector<std::string>& argumentos : {std::vector<std::string>{"--ajuda"}, {"selar", "--ajuda"}}) {
        EXPECT_EQ(Rodar(argumentos), kFeito);
        EXPECT_TRUE(Contem(saida_.linhas, "Forjal selar") && saida_.erros.empty());
    }
}

}  // namespace
}  // namespace zu::launcher::forjal
