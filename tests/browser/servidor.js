// servidor.js: serves the browser front (www/) and cambioIP.cgi through lighttpd on a
// temporary rack, the way the master's web server does, for the browser tests.
//
//   const servidor = await arrancaServidor({ cgi: '/path/to/cambioIP.cgi' });
//   ... servidor.url ('http://127.0.0.1:<port>/'), servidor.raiz (the rack's root) ...
//   await servidor.para();
//
// Each server gets a fresh temporary folder holding a copy of a fixture rack (the CGI sees
// it as "/" through CAMBIOIP_ROOT) and its lighttpd configuration and logs; para() stops
// lighttpd and removes the folder.
//
// Run on its own to look at a rack in a browser:  node servidor.js <cambioIP.cgi> [rack]
'use strict';

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const net = require('node:net');
const http = require('node:http');
const { spawn } = require('node:child_process');

const REPO = path.resolve(__dirname, '..', '..');
const WWW = path.join(REPO, 'www');
const RACKS = path.join(REPO, 'tests', 'fixtures', 'racks');

// How long lighttpd may take to answer its first request; generous for a loaded machine.
const ESPERA_ARRANQUE_MS = 20000;

function buscaLighttpd() {
  for (const dir of (process.env.PATH || '').split(':').concat(['/usr/sbin', '/sbin'])) {
    const candidato = path.join(dir || '.', 'lighttpd');
    try {
      fs.accessSync(candidato, fs.constants.X_OK);
      return candidato;
    } catch {
      // not in this folder
    }
  }
  return null;
}

// A loopback port that nothing listens on right now. Another process may take it before
// lighttpd binds it; arrancaServidor() then tries again with a new one.
function puertoLibre() {
  return new Promise((resolve, reject) => {
    const s = net.createServer();
    s.once('error', reject);
    s.listen(0, '127.0.0.1', () => {
      const { port } = s.address();
      s.close(() => resolve(port));
    });
  });
}

// lighttpd quotes strings with "..."; the paths here are ours, but a quote or backslash in
// a temporary folder name would still break the file, so refuse rather than guess.
function comillas(texto) {
  if (/["\\\n]/.test(texto))
    throw new Error(`path not usable in a lighttpd configuration: ${texto}`);
  return `"${texto}"`;
}

function configuracion({ www, cgi, raiz, puerto, carpeta }) {
  return `server.document-root = ${comillas(www)}
server.bind          = "127.0.0.1"
server.port          = ${puerto}
server.modules      += ( "mod_alias", "mod_cgi", "mod_setenv" )
server.errorlog      = ${comillas(path.join(carpeta, 'lighttpd-error.log'))}
server.pid-file      = ${comillas(path.join(carpeta, 'lighttpd.pid'))}
index-file.names     = ( "index.html" )
mimetype.assign      = ( ".html" => "text/html; charset=utf-8", ".css" => "text/css",
                         ".js" => "text/javascript", ".png" => "image/png",
                         ".gif" => "image/gif", ".svg" => "image/svg+xml" )
# The browser's copy of the output tables is written by the build beside the CGI.
alias.url            = ( "/cgi-bin/cambioIP.cgi" => ${comillas(cgi)},
                         "/js/tablas.js" => ${comillas(path.join(path.dirname(cgi), 'www', 'js', 'tablas.js'))} )
$HTTP["url"] =~ "^/cgi-bin/" {
  cgi.assign = ( ".cgi" => "" )
}
# The CGI resolves the rack's fixed paths (/config, /upload, /root) under the copy.
setenv.add-environment = ( "CAMBIOIP_ROOT" => ${comillas(raiz)}, "CAMBIOIP_LOAD_PAUSE_MS" => "0" )
`;
}

// Resolves once GET / answers (any status), or rejects when lighttpd exits or the wait ends.
function esperaRespuesta(puerto, proceso, salida) {
  const limite = Date.now() + ESPERA_ARRANQUE_MS;
  return new Promise((resolve, reject) => {
    let terminado = false;
    const alSalir = (codigo, senal) => {
      if (terminado) return;
      terminado = true;
      reject(Object.assign(new Error(`lighttpd exited (${senal || codigo}) before answering:\n${salida()}`),
        { salidaTemprana: true }));
    };
    proceso.once('exit', alSalir);
    const intenta = () => {
      if (terminado) return;
      const peticion = http.get({ host: '127.0.0.1', port: puerto, path: '/', timeout: 2000 }, (r) => {
        r.resume();
        terminado = true;
        proceso.off('exit', alSalir);
        resolve();
      });
      peticion.on('timeout', () => peticion.destroy(new Error('timeout')));
      peticion.on('error', () => {
        if (terminado) return;
        if (Date.now() > limite) {
          terminado = true;
          proceso.off('exit', alSalir);
          reject(new Error(`lighttpd did not answer on port ${puerto} within ${ESPERA_ARRANQUE_MS} ms:\n${salida()}`));
          return;
        }
        setTimeout(intenta, 50);
      });
    };
    intenta();
  });
}

async function arrancaServidor({ cgi, rack = 'qam', www = WWW } = {}) {
  if (!cgi) throw new Error('arrancaServidor: the path of cambioIP.cgi is missing');
  cgi = path.resolve(cgi);
  fs.accessSync(cgi, fs.constants.X_OK);
  const lighttpd = buscaLighttpd();
  if (!lighttpd) throw new Error('lighttpd is not installed (make deps)');
  const origen = path.isAbsolute(rack) ? rack : path.join(RACKS, rack);
  if (!fs.statSync(origen).isDirectory()) throw new Error(`no rack at ${origen}`);

  const carpeta = fs.realpathSync(fs.mkdtempSync(path.join(os.tmpdir(), 'cambioip-browser-')));
  const raiz = path.join(carpeta, 'root');
  try {
    fs.cpSync(origen, raiz, { recursive: true, preserveTimestamps: true });
    const conf = path.join(carpeta, 'lighttpd.conf');
    let ultimoError;
    for (let intento = 0; intento < 5; intento++) {
      const puerto = await puertoLibre();
      fs.writeFileSync(conf, configuracion({ www, cgi, raiz, puerto, carpeta }));
      // The CGI's standard error reaches lighttpd's; it is kept to explain a failure.
      let registro = '';
      const proceso = spawn(lighttpd, ['-D', '-f', conf], { stdio: ['ignore', 'pipe', 'pipe'] });
      const guarda = (trozo) => { registro = (registro + trozo).slice(-20000); };
      proceso.stdout.on('data', guarda);
      proceso.stderr.on('data', guarda);
      const salida = () => {
        let log = '';
        try { log = fs.readFileSync(path.join(carpeta, 'lighttpd-error.log'), 'utf8'); } catch { /* none yet */ }
        return (log + registro).trim();
      };
      try {
        await esperaRespuesta(puerto, proceso, salida);
      } catch (error) {
        ultimoError = error;
        await paraProceso(proceso);
        if (error.salidaTemprana && /bind|address already in use/i.test(error.message)) continue;
        throw error;
      }
      return {
        url: `http://127.0.0.1:${puerto}/`,
        raiz,
        carpeta,
        registro: salida,
        para: async () => {
          await paraProceso(proceso);
          fs.rmSync(carpeta, { recursive: true, force: true });
        },
      };
    }
    throw ultimoError;
  } catch (error) {
    fs.rmSync(carpeta, { recursive: true, force: true });
    throw error;
  }
}

// SIGTERM, then SIGKILL if lighttpd has not gone after a while.
function paraProceso(proceso) {
  if (proceso.exitCode !== null || proceso.signalCode !== null) return Promise.resolve();
  return new Promise((resolve) => {
    const matar = setTimeout(() => proceso.kill('SIGKILL'), 5000);
    proceso.once('exit', () => { clearTimeout(matar); resolve(); });
    proceso.kill('SIGTERM');
  });
}

module.exports = { arrancaServidor, buscaLighttpd, REPO, WWW };

if (require.main === module) {
  const [cgi, rack] = process.argv.slice(2);
  if (!cgi) {
    console.error('usage: node servidor.js <cambioIP.cgi> [rack under tests/fixtures/racks]');
    process.exit(2);
  }
  arrancaServidor({ cgi, rack }).then((servidor) => {
    console.log(`serving ${servidor.url} on the rack copy ${servidor.raiz} (Ctrl-C stops)`);
    const fin = () => servidor.para().then(() => process.exit(0));
    process.once('SIGINT', fin);
    process.once('SIGTERM', fin);
  }, (error) => {
    console.error(error.message);
    process.exit(1);
  });
}
