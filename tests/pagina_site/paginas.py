"""The launcher's page script in a real browser: paginas.py FOLDER, where the script's printer and the browser's two
pipes lie.

Every page is loaded as the launcher's view loads it, with the script run before the document exists, and its layout is
measured: the page is cut down to its element, or looks exactly as it does without the script."""
import itertools, json, pathlib, subprocess, sys

LARGURA, ALTURA = 436, 333  # of the view, in pixels

# [data-alvo] is what the selector means, known without it.
MEDIDA = '''(async () => {
    if (document.readyState !== 'complete') await new Promise(r => addEventListener('load', r));
    await new Promise(r => setTimeout(r, 200));
    const alvo = document.querySelector('[data-alvo]'), caixa = document.getElementById('tv-launcher-box');
    const medir = e => e && (r => [r.x, r.y, r.width, r.height])(e.getBoundingClientRect());
    const noAlvo = [[0, 0], [innerWidth - 1, innerHeight - 1], [innerWidth / 2, innerHeight / 2]].filter(
        ponto => alvo && alvo.contains(document.elementFromPoint(...ponto))).length;
    scrollTo(1e6, 1e6);
    return {
        caixa: medir(caixa), alvo: medir(alvo), noAlvo, rolou: [scrollX, scrollY],
        barras: [innerWidth - document.documentElement.clientWidth, innerHeight - document.documentElement.clientHeight],
        aMostra: [...document.body.children].filter(e => e !== caixa && e.getClientRects().length).length,
        fundo: getComputedStyle(document.body).backgroundColor,
        quadros: [...document.querySelectorAll('iframe')].map(f => f.contentDocument.body.innerText),
    };
})()'''
TODO = [0, 0, LARGURA, ALTURA]
CORTADA = {'caixa': TODO, 'alvo': TODO, 'noAlvo': 3, 'rolou': [0, 0], 'barras': [0, 0], 'aMostra': 0,
           'fundo': 'rgb(0, 0, 0)', 'quadros': []}

ENCHIMENTO = '<p style="width:900px">' + 'Texto em volta do que interessa. ' * 30 + '</p>'
ESTILO = '''<style>html{overflow:scroll} html,body{min-width:1000px;padding:20px;background:#fff} .alvo{width:300px;height:200px;margin:40px;
max-width:50%;aspect-ratio:4/3;border:9px solid red;box-shadow:0 0 9px red;background:#123}</style>'''


def pagina(corpo, cabeca=ESTILO):
    return f'<!DOCTYPE html><html><head><meta charset="utf-8">{cabeca}</head><body><h1>Servidor</h1>{corpo}' \
           f'{ENCHIMENTO * 5}<footer>fim</footer></body></html>'


def alvo(atributos):
    return f'<div class="alvo" data-alvo {atributos}><b>notícias</b></div>'


FUNDO = '<div style="position:relative;overflow:hidden;width:250px;height:90px;opacity:.9">' * 40
TARDE = '''<script>addEventListener('load', () => setTimeout(() => document.body.insertAdjacentHTML('afterbegin',
'<div class="alvo" id="a" data-alvo></div>'), 50))</script>'''
SEM_SCRIPTS = '<meta http-equiv="Content-Security-Policy" content="script-src \'none\'">'

# name, selector, page, what differs from a page that is cut; None: everything, it stays as it is
CASOS = [
    ('no fundo, o primeiro de dois', '.alvo', pagina(FUNDO + alvo('') + '</div>' * 40 + '<p class="alvo">outro</p>'), {}),
    ('inserido tarde', '#a', pagina(TARDE), None),
    ('um quadro', 'iframe', pagina('<iframe data-alvo srcdoc="dentro"></iframe>'), {'quadros': ['dentro']}),
    ('aspas, barra e acento', "[title='it\\'s \"ação\"']", pagina(alvo('title="it\'s &quot;ação&quot;"')), {}),
    ('política sem scripts', '#a', pagina(alvo('id="a"'), SEM_SCRIPTS + ESTILO), {}),
]


class Navegador:
    def __init__(self, pasta):
        self.escrita, self.leitura = open(pasta / 'para', 'wb', 0), open(pasta / 'de', 'rb')
        self.numeros = itertools.count(1)

    def pedir(self, metodo, sessao={}, **parametros):
        pedido = {'id': next(self.numeros), 'method': metodo, 'params': parametros} | sessao
        self.escrita.write(json.dumps(pedido).encode() + b'\0')
        resposta = {}
        while resposta.get('id') != pedido['id']:
            resposta = json.loads(b''.join(iter(lambda: self.leitura.read(1) or sys.exit('sem navegador'), b'\0')))
        return resposta['result']

    def medir(self, endereco, script):
        """What the page, in a tab of its own with the script run first, looks like."""
        aba = self.pedir('Target.createTarget', url='about:blank')['targetId']
        nela = {'sessionId': self.pedir('Target.attachToTarget', targetId=aba, flatten=True)['sessionId']}
        self.pedir('Page.enable', nela)
        self.pedir('Emulation.setDeviceMetricsOverride', nela, width=LARGURA, height=ALTURA, deviceScaleFactor=1,
                   mobile=False)
        self.pedir('Emulation.setScrollbarsHidden', nela, hidden=False)
        self.pedir('Page.addScriptToEvaluateOnNewDocument', nela, source=script)
        self.pedir('Page.navigate', nela, url=endereco)
        resposta = self.pedir('Runtime.evaluate', nela, expression=MEDIDA, awaitPromise=True, returnByValue=True)
        return resposta['result']['value']


pasta = pathlib.Path(sys.argv[1])
navegador, faltas = Navegador(pasta), 0
for nome, seletor, html, diferenca in CASOS:
    (pasta / 'pagina.html').write_text(html, 'utf-8')
    endereco = (pasta / 'pagina.html').as_uri()
    script = subprocess.run([pasta / 'imprimir', seletor], check=True, capture_output=True, text=True).stdout
    visto, inteira = navegador.medir(endereco, script), navegador.medir(endereco, '')
    esperado = inteira if diferenca is None else CORTADA | diferenca
    # The page as it is has everything that the script takes away, or the test would show nothing.
    tem = inteira['barras'][0] > 0 and inteira['rolou'][1] > 0 and inteira['aMostra'] > 2
    faltas += visto != esperado or not tem
    print(f'{"certo" if visto == esperado and tem else "FALHOU"}: {nome}\n  visto    {visto}\n  inteira  {inteira}')
navegador.pedir('Browser.close')
sys.exit(faltas)
