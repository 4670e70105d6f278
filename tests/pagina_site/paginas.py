"""The launcher's page script in a real browser: paginas.py SCRIPT_PRINTER CHROMIUM SERVED_FOLDER ADDRESS PROFILE

Every page is loaded as the launcher's view loads it, with the script run before the document exists, and its layout is
measured: the page is cut down to its element, or looks exactly as it does without the script."""
import pathlib, subprocess, sys

from navegador import Navegador

LARGURA, ALTURA = 436, 333  # of the view, in pixels

# [data-alvo] is what the selector means, known without it.
MEDIDA = '''(async () => {
    await new Promise(r => setTimeout(r, 200));
    const alvo = document.querySelector('[data-alvo]'), caixa = document.getElementById('tv-launcher-box');
    const medir = e => e && (r => [r.x, r.y, r.width, r.height])(e.getBoundingClientRect());
    let noAlvo = 0;
    for (let i = 0; i <= 8; ++i)
        for (let j = 0; j <= 8; ++j)
            noAlvo += alvo && alvo.contains(document.elementFromPoint(
                Math.floor((innerWidth - 1) * i / 8), Math.floor((innerHeight - 1) * j / 8))) ? 1 : 0;
    scrollTo(1e6, 1e6);
    return {
        caixa: medir(caixa), alvo: medir(alvo), noAlvo, rolou: [scrollX, scrollY],
        barras: [innerWidth - document.documentElement.clientWidth, innerHeight - document.documentElement.clientHeight],
        aMostra: [...new Set([...document.body.children].filter(e => e !== caixa && e.getClientRects().length)
                             .map(e => e.tagName))],
        fundo: getComputedStyle(document.body).backgroundColor,
        quadros: [...document.querySelectorAll('iframe')].map(
            f => [f.contentDocument.body.innerText, !!f.contentDocument.getElementById('tv-launcher-box')]),
    };
})()'''
TODO = [0, 0, LARGURA, ALTURA]
CORTADA = {'caixa': TODO, 'alvo': TODO, 'noAlvo': 81, 'rolou': [0, 0], 'barras': [0, 0], 'aMostra': [],
           'fundo': 'rgb(0, 0, 0)', 'quadros': []}

ENCHIMENTO = '<p style="width:900px">' + 'Texto em volta do que interessa. ' * 30 + '</p>'
ESTILO = '''<style>html{overflow:scroll} html,body{min-width:1000px;padding:20px;background:#fff} .alvo{width:300px;height:200px;margin:40px;
max-width:50%;aspect-ratio:4/3;border:9px solid red;box-shadow:0 0 9px red;background:#123}</style>'''


def pagina(corpo, cabeca=ESTILO):
    return f'<!DOCTYPE html><html><head><meta charset="utf-8">{cabeca}</head><body><h1>Servidor</h1>{corpo}' \
           f'{ENCHIMENTO * 5}<footer>fim</footer></body></html>'


def alvo(atributos, dentro='<b>notícias</b>'):
    return f'<div class="alvo" data-alvo {atributos}>{dentro}</div>'


def politica(texto):
    return f'<meta http-equiv="Content-Security-Policy" content="{texto}">'


FUNDO = '<div style="position:relative;overflow:hidden;width:250px;height:90px;opacity:.9">' * 40
TARDE = '''<script>addEventListener('load', () => setTimeout(() => document.body.insertAdjacentHTML('afterbegin',
'<div class="alvo" id="a" data-alvo></div>'), 50))</script>'''
QUADRO = '<iframe src="quadro.html" style="width:80px;height:60px"></iframe>'
SEM_RECORTE = None
# The page forbids the style that the script brings, and the element only moves to the end.
SEM_ESTILO = {'aMostra': ['H1', 'P', 'FOOTER']}

# name, selector, page, what differs from a page that is cut
CASOS = [
    ('presente', '#a', pagina(ENCHIMENTO + alvo('id="a"')), {}),
    ('o primeiro de dois', '.alvo', pagina(alvo('') + '<div class="alvo">outro</div>'), {}),
    ('ausente', '#nada', pagina(alvo('id="a"')), SEM_RECORTE),
    ('no fundo', 'main .alvo', pagina('<main>' + FUNDO + alvo('') + '</div>' * 40 + '</main>'), {}),
    ('inserido tarde', '#a', pagina(TARDE), SEM_RECORTE),
    ('com um quadro dentro', '#a', pagina(alvo('id="a"', QUADRO)), {'quadros': [['dentro do quadro', False]]}),
    ('ele mesmo um quadro', 'iframe', pagina(QUADRO.replace('<iframe', '<iframe data-alvo')),
     {'quadros': [['dentro do quadro', False]]}),
    ('aspas simples', "[title='it\\'s']", pagina(alvo('title="it\'s"')), {}),
    ('aspas duplas', '[title="a b"]', pagina(alvo('title="a b"')), {}),
    ('barra invertida', '#a\\:b\\.c', pagina(alvo('id="a:b.c"')), {}),
    ('duas barras', "[title='c:\\\\x']", pagina(alvo('title="c:\\x"')), {}),
    ('acentos', '#notícias', pagina(alvo('id="notícias"')), {}),
    ('seletor inválido', "div[", pagina(alvo('id="a"')), SEM_RECORTE),
    ('política sem scripts', '#a', pagina(alvo('id="a"'), politica("script-src 'none'") + ESTILO), {}),
    ('política estrita', '#a', pagina(alvo('id="a"'), politica("default-src 'self'")), SEM_ESTILO),
    ('2 MB', '#a', pagina(ENCHIMENTO * (2_000_000 // len(ENCHIMENTO)) + alvo('id="a"')), {}),
]


def main():
    imprimir, chromium, pasta, endereco, perfil = sys.argv[1:]
    (pathlib.Path(pasta) / 'quadro.html').write_text('<!DOCTYPE html><p>dentro do quadro</p>', 'utf-8')
    navegador, faltas = Navegador(chromium, perfil), 0
    for numero, (nome, seletor, html, diferenca) in enumerate(CASOS):
        (pathlib.Path(pasta) / f'{numero}.html').write_text(html, 'utf-8')
        script = subprocess.run([imprimir, seletor], check=True, capture_output=True, text=True).stdout
        medir = lambda com: navegador.medir(f'{endereco}/{numero}.html', com, MEDIDA, LARGURA, ALTURA)
        visto, inteira = medir(script), medir('')
        if diferenca is SEM_ESTILO:
            esperado = inteira | SEM_ESTILO | {medida: visto[medida] for medida in ('caixa', 'alvo', 'noAlvo', 'rolou')}
        else:
            esperado = inteira if diferenca is SEM_RECORTE else CORTADA | diferenca
        # The page as it is has everything that the script takes away, or the test would show nothing.
        tem = inteira['barras'][0] > 0 and inteira['rolou'][1] > 0 and len(inteira['aMostra']) > 2
        if visto == esperado and tem:
            print('certo:', nome)
        else:
            faltas += 1
            print(f'FALHOU: {nome}\n  visto    {visto}\n  esperado {esperado}\n  inteira  {inteira}')
    navegador.fechar()
    sys.exit(1 if faltas else 0)


main()
