"""Headless Chromium over its DevTools pipe, as much of it as the page test needs."""
import json, os, select, time


class Navegador:
    def __init__(self, programa, perfil):
        leitura_dele, escrita = os.pipe()
        leitura, escrita_dele = os.pipe()
        argumentos = [programa, '--headless', '--no-sandbox', '--disable-gpu', '--disable-background-networking',
                      '--remote-debugging-pipe', '--user-data-dir=' + perfil]
        nulo = os.open(os.devnull, os.O_WRONLY)
        # The pipe's two ends are descriptors 3 and 4 by convention; made elsewhere first, so that neither is lost.
        altos = [os.dup2(leitura_dele, 103, inheritable=False), os.dup2(escrita_dele, 104, inheritable=False)]
        self.pid = os.posix_spawn(programa, argumentos, os.environ, file_actions=[
            (os.POSIX_SPAWN_DUP2, altos[0], 3), (os.POSIX_SPAWN_DUP2, altos[1], 4), (os.POSIX_SPAWN_DUP2, nulo, 2)])
        for fim in (leitura_dele, escrita_dele, *altos):
            os.close(fim)
        self.leitura, self.escrita, self.resto, self.numero = leitura, escrita, b'', 0

    def mensagem(self, limite=60):
        ate = time.monotonic() + limite
        while b'\0' not in self.resto:
            if not select.select([self.leitura], [], [], max(0, ate - time.monotonic()))[0]:
                raise TimeoutError('o navegador não respondeu')
            pedaco = os.read(self.leitura, 1 << 16)
            if not pedaco:
                raise EOFError('o navegador terminou')
            self.resto += pedaco
        texto, self.resto = self.resto.split(b'\0', 1)
        return json.loads(texto)

    def pedir(self, metodo, sessao=None, **parametros):
        self.numero += 1
        pedido = {'id': self.numero, 'method': metodo, 'params': parametros}
        if sessao:
            pedido['sessionId'] = sessao
        os.write(self.escrita, json.dumps(pedido).encode() + b'\0')
        while True:
            resposta = self.mensagem()
            if resposta.get('id') == self.numero:
                if 'error' in resposta:
                    raise RuntimeError(f'{metodo}: {resposta["error"]}')
                return resposta['result']

    def medir(self, endereco, script, medida, largura, altura):
        """Loads the address in a page of its own with the script run first, and returns what `medida`, an expression
        that may be a promise, gives there."""
        alvo = self.pedir('Target.createTarget', url='about:blank')['targetId']
        sessao = self.pedir('Target.attachToTarget', targetId=alvo, flatten=True)['sessionId']
        self.pedir('Page.enable', sessao)
        self.pedir('Emulation.setDeviceMetricsOverride', sessao, width=largura, height=altura, deviceScaleFactor=1,
                   mobile=False)
        self.pedir('Emulation.setScrollbarsHidden', sessao, hidden=False)
        if script:
            self.pedir('Page.addScriptToEvaluateOnNewDocument', sessao, source=script)
        if 'errorText' in self.pedir('Page.navigate', sessao, url=endereco):
            raise RuntimeError(endereco + ' não abriu')
        self.avaliar(sessao, 'new Promise(r => document.readyState === "complete" ? r() : '
                             'addEventListener("load", () => r()))')
        valor = self.avaliar(sessao, medida)
        self.pedir('Target.closeTarget', targetId=alvo)
        return valor

    def avaliar(self, sessao, expressao):
        resposta = self.pedir('Runtime.evaluate', sessao, expression=expressao, awaitPromise=True, returnByValue=True)
        if 'exceptionDetails' in resposta:
            raise RuntimeError(resposta['exceptionDetails'])
        return resposta['result'].get('value')

    def fechar(self):
        self.pedir('Browser.close')
        os.waitpid(self.pid, 0)
