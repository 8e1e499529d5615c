// The encoder input page (www/js/entrada.js): an input's enable box, its video and audio
// connectors and its audio codec leave every control of the unit's row as the CGI itself
// paints a unit stored with the new value; so does the DHCP box of the network page. The oracle is the CGI: the value is
// planted in the unit's document of the rack copy, the page is loaded again, and the row's
// controls are compared. Nothing of it may show a console error.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { describe, test, before, after } = require('node:test');
const assert = require('node:assert/strict');
const { arrancaServidor } = require('./servidor.js');
const { abreNavegador, vigilaPagina, conCaptura } = require('./navegador.js');

const ESPERA_MS = 15000;

let navegador;
const servidores = new Map();

before(async () => {
  navegador = await abreNavegador();
});

after(async () => {
  await navegador?.close();
  for (const servidor of servidores.values()) await servidor.para();
});

async function servidorDe(rack) {
  if (!servidores.has(rack))
    servidores.set(rack, await arrancaServidor({ cgi: process.env.CAMBIOIP_CGI, rack }));
  return servidores.get(rack);
}

// The unit's document in the rack copy: the master's is network.xml.
const documentoDe = (servidor, sufijo) =>
  path.join(servidor.raiz, 'config', sufijo ? `network.${sufijo.slice(1).replace(/_/g, '.')}.xml` : 'network.xml');

// Sets the text of the element reached by `ruta` (each tag searched after the previous one).
function planta(xml, ruta, valor) {
  let desde = 0;
  for (const etiqueta of ruta.slice(0, -1)) {
    desde = xml.indexOf(`<${etiqueta}>`, desde);
    assert.ok(desde >= 0, `the document has <${etiqueta}>`);
  }
  const hoja = ruta.at(-1);
  const inicio = xml.indexOf(`<${hoja}>`, desde);
  assert.ok(inicio >= 0, `the document has <${hoja}>`);
  const fin = xml.indexOf(`</${hoja}>`, inicio);
  return `${xml.slice(0, inicio + hoja.length + 2)}${valor}${xml.slice(fin)}`;
}

async function abre(servidor, problemas, ruta) {
  const contexto = await navegador.newContext();
  const pagina = await contexto.newPage();
  pagina.setDefaultTimeout(ESPERA_MS);
  problemas.push(vigilaPagina(pagina));
  await pagina.goto(`${servidor.url}#/${ruta}`);
  await pagina.waitForSelector(`main#contenido[data-estado="listo"][data-ruta="${ruta}"]`, { state: 'attached' });
  return { contexto, pagina };
}

// What the operator sees of the unit's row: every control outside a hidden line, with its
// value, options, tick and whether it is disabled.
function estadoFila(pagina, sufijo) {
  return pagina.evaluate((sufijo) => {
    const caja = document.querySelector(`#contenido [name="forzarconfig${sufijo}"]`);
    const fila = caja.closest('tr');
    return [...fila.querySelectorAll('input[name], select[name], button[name]')]
      .filter((c) => c.type !== 'hidden' && !c.name.startsWith('forzarconfig') && !c.closest('div[hidden]'))
      .map((c) => ({
        nombre: c.name,
        valor: c.type === 'checkbox' ? c.checked : c.value ?? '',
        desactivado: c.disabled,
        opciones: c.tagName === 'SELECT' ? [...c.options].map((o) => o.value).join(',') : undefined,
      }));
  }, sufijo);
}

// Opens the page, runs `accion(pagina)`, and compares the row with the CGI's page for the
// document with `ediciones` ([path, value] pairs); the document is put back afterwards.
async function comparaConCGI(nombre, { rack = 'qam', ruta = 'inputs', sufijo, ediciones, accion, despues }) {
  const servidor = await servidorDe(rack);
  const problemas = [];
  const { contexto, pagina } = await abre(servidor, problemas, ruta);
  const fichero = documentoDe(servidor, sufijo);
  const original = fs.readFileSync(fichero, 'utf8');
  try {
    await conCaptura(pagina, nombre, async () => {
      const antes = await estadoFila(pagina, sufijo);
      await accion(pagina);
      const cambiado = await estadoFila(pagina, sufijo);
      assert.notDeepEqual(cambiado, antes, 'the change shows on the row');

      fs.writeFileSync(fichero, ediciones.reduce((xml, [ruta, valor]) => planta(xml, ruta, valor), original));
      const oraculo = await abre(servidor, problemas, ruta);
      try {
        assert.deepEqual(cambiado, await estadoFila(oraculo.pagina, sufijo), 'the row is as the CGI paints it');
      } finally {
        await oraculo.contexto.close();
      }
      if (despues) await despues(pagina, antes);
      assert.deepEqual(problemas.flat(), [], 'no page showed errors or failed requests');
    });
  } finally {
    fs.writeFileSync(fichero, original);
    await contexto.close();
  }
}

const elige = (nombre, valor) => async (pagina) => {
  await pagina.locator(`#contenido [name="${nombre}"]`).selectOption(valor);
};
const pulsa = (nombre) => async (pagina) => {
  await pagina.locator(`#contenido [name="${nombre}"]`).click();
};
const filaMarcada = async (pagina, sufijo) => pagina.locator(`#contenido [name="forzarconfig${sufijo}"]`).isChecked();

// Unit 021 (qam, document version 6, Comp.+HDMI video, every audio connector, resolution
// limits): input 1 HDMI video with HDMI audio, input 2 Comp. with analog audio.
// Unit 022 (version 5, CVBS only, no resolution limit): input 4 off. Unit 103 (version 3,
// no resolution limit stored). The cofdm rack's rows have neither audio codec nor captions.
const E1 = 'ENTRADA1';
const E2 = 'ENTRADA2';
const CASOS = [
  { nombre: 'input 1 off: its line disabled', sufijo: '_010_000_000_021', accion: pulsa('eon1_010_000_000_021'),
    ediciones: [[[E1, 'ACTIVA'], '0']],
    despues: async (pagina, antes) => {
      await pulsa('eon1_010_000_000_021')(pagina);
      assert.deepEqual(await estadoFila(pagina, '_010_000_000_021'), antes, 'on again, the line is as painted');
    } },
  { nombre: 'version 5, CVBS only: input 4 on keeps video, Field/Frame and resolution locked',
    sufijo: '_010_000_000_022', accion: pulsa('eon4_010_000_000_022'), ediciones: [[['ENTRADA4', 'ACTIVA'], '1']] },
  { nombre: 'version 3: input 1 off', sufijo: '_010_000_000_103', accion: pulsa('eon1_010_000_000_103'),
    ediciones: [[[E1, 'ACTIVA'], '0']],
    despues: async (pagina, antes) => {
      await pulsa('eon1_010_000_000_103')(pagina);
      assert.deepEqual(await estadoFila(pagina, '_010_000_000_103'), antes, 'the resolution limit stays locked');
    } },
  { nombre: 'video Comp. -> HDMI: the HDMI audio connectors are offered', sufijo: '_010_000_000_021',
    accion: elige('vidinp2_010_000_000_021', '1'), ediciones: [[[E2, 'VIDEOIN'], '1']] },
  { nombre: 'video HDMI -> Comp. with HDMI audio: analog audio, its codec free', sufijo: '_010_000_000_021',
    accion: elige('vidinp1_010_000_000_021', '0'), ediciones: [[[E1, 'VIDEOIN'], '0'], [[E1, 'AUDIOIN'], '0']] },
  { nombre: 'audio analog -> coaxial: the audio codec locked', sufijo: '_010_000_000_021',
    accion: elige('audinp2_010_000_000_021', '2'), ediciones: [[[E2, 'AUDIOIN'], '2']] },
  { nombre: 'audio HDMI -> analog: the audio codec free', sufijo: '_010_000_000_021',
    accion: elige('audinp1_010_000_000_021', '0'), ediciones: [[[E1, 'AUDIOIN'], '0']] },
  { nombre: 'audio codec MPEG -> DOLBY', sufijo: '_010_000_000_021',
    accion: elige('audcod2_010_000_000_021', '1'), ediciones: [[[E2, 'AUDIO'], '1']] },
  { nombre: 'video HDMI -> Comp. (EU layout: no audio codec)', rack: 'cofdm', sufijo: '_010_000_000_104',
    accion: elige('vidinp1_010_000_000_104', '0'), ediciones: [[[E1, 'VIDEOIN'], '0'], [[E1, 'AUDIOIN'], '0']] },
  { nombre: 'video Comp. -> HDMI (EU layout)', rack: 'cofdm', sufijo: '',
    accion: elige('vidinp2', '1'), ediciones: [[[E2, 'VIDEOIN'], '1']] },
  { nombre: 'input 2 off (EU layout)', rack: 'cofdm', sufijo: '',
    accion: pulsa('eon2'), ediciones: [[[E2, 'ACTIVA'], '0']] },
  { nombre: 'video codec H264 -> MPEG2 with 1080PHR: Field/Frame locked', sufijo: '_010_000_000_021',
    accion: elige('vidcod1_010_000_000_021', '0'), ediciones: [[[E1, 'VIDEO'], '0']],
    despues: async (pagina, antes) => {
      await elige('vidcod1_010_000_000_021', '6')(pagina);
      assert.deepEqual(await estadoFila(pagina, '_010_000_000_021'), antes, 'H264 again frees Field/Frame');
    } },
  { nombre: 'resolution limit 480I -> 1080PHR with MPEG2: Field/Frame locked', sufijo: '_010_000_000_021',
    accion: elige('maxoutres2_010_000_000_021', '256'), ediciones: [[[E2, 'LIMITERESOLUCION'], '256']] },
  { nombre: 'network page: DHCP on locks the address fields', ruta: 'network', sufijo: '_010_000_000_021',
    accion: pulsa('dhcpcheck_010_000_000_021'), ediciones: [[['NETWORK', 'IP_AUTO'], '1']],
    despues: async (pagina, antes) => {
      await pulsa('dhcpcheck_010_000_000_021')(pagina);
      assert.deepEqual(await estadoFila(pagina, '_010_000_000_021'), antes, 'DHCP off frees them again');
    } },
];

describe('a change on a line paints the row as the CGI does for the stored value', () => {
  for (const caso of CASOS)
    test(`${caso.rack ?? 'qam'} ${caso.ruta ?? 'inputs'}: ${caso.nombre}`, () => comparaConCGI(caso.nombre, caso));
});

// The encoding load: the output the unit's document holds (planted before the page is
// loaded), the video bit rate typed for input 1, and the warning beside the unit's model
// once a video codec is chosen. Capacities: 256-QAM Annex B 38.81 Mbit/s; DVB-T 8 MHz
// 16-QAM 2/3 1/4 13.27 Mbit/s, 64-QAM 3/4 1/8 24.88 Mbit/s; cable 64-QAM at 6.9 Mbaud
// 38.15 Mbit/s.
const CARGAS = [
  { nombre: 'QAM unit asked 46.51 Mbit/s', sufijo: '_010_000_000_021', video: '40', codec: '5',
    aviso: 'The encoders ask 46.51 Mbit/s; the output carries 38.81 Mbit/s' },
  { nombre: 'QAM unit within its output', sufijo: '_010_000_000_021', video: '30', codec: '5', aviso: null },
  { nombre: 'DVB-T 16-QAM 2/3 1/4 just over', rack: 'cofdm', sufijo: '_010_000_000_104', video: '8', codec: '0',
    salida: { MODO: '1', BW: '0', GUARDA: '3', FEC: '1' },
    aviso: 'The encoders ask 13.32 Mbit/s; the output carries 13.27 Mbit/s' },
  { nombre: 'DVB-T 64-QAM 3/4 1/8', rack: 'cofdm', sufijo: '_010_000_000_104', video: '20', codec: '0',
    salida: { MODO: '2', BW: '0', GUARDA: '2', FEC: '2' },
    aviso: 'The encoders ask 25.32 Mbit/s; the output carries 24.88 Mbit/s' },
  { nombre: 'cable 64-QAM at 6.9 Mbaud', rack: 'cofdm', sufijo: '_010_000_000_104', video: '30', codec: '0',
    salida: { MODO: '14', BAUDRATE: '6.900' }, aviso: null },
];

describe('a unit whose encoders ask more than its output carries is warned beside its row', () => {
  for (const caso of CARGAS) {
    test(`${caso.rack ?? 'qam'}: ${caso.nombre}`, async () => {
      const servidor = await servidorDe(caso.rack ?? 'qam');
      const fichero = documentoDe(servidor, caso.sufijo);
      const original = fs.readFileSync(fichero, 'utf8');
      const problemas = [];
      let contexto;
      try {
        fs.writeFileSync(fichero, Object.entries(caso.salida ?? {})
          .reduce((xml, [etiqueta, valor]) => planta(xml, ['SALIDACOFDM', etiqueta], valor), original));
        const abierta = await abre(servidor, problemas, 'inputs');
        contexto = abierta.contexto;
        const { pagina } = abierta;
        await conCaptura(pagina, `carga ${caso.nombre}`, async () => {
          const aviso = () => pagina.evaluate((sufijo) => document.querySelector(`#contenido [name="forzarconfig${sufijo}"]`)
            .closest('tr').querySelector('.aviso-codificacion')?.textContent ?? null, caso.sufijo);
          assert.equal(await aviso(), null, 'no warning before a codec is chosen');
          await pagina.locator(`#contenido [name="vidbit1${caso.sufijo}"]`).fill(caso.video);
          await elige(`vidcod1${caso.sufijo}`, caso.codec)(pagina);
          assert.equal(await aviso(), caso.aviso);
          if (caso.aviso) {
            // Input 1 off: its encoder asks nothing any more.
            await pulsa(`eon1${caso.sufijo}`)(pagina);
            await elige(`vidcod2${caso.sufijo}`, '1')(pagina);
            assert.equal(await aviso(), null, 'the warning goes when the load fits');
          }
          assert.deepEqual(problemas.flat(), []);
        });
      } finally {
        fs.writeFileSync(fichero, original);
        await contexto?.close();
      }
    });
  }
});
