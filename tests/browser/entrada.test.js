// The encoder input page (www/js/entrada.js): an input's enable box, its video and audio
// connectors and its audio codec leave every control of the unit's row as the CGI itself
// paints a unit stored with the new value; so does the DHCP box of the network page. The oracle is the CGI: the value is
// planted in the unit's document of the rack copy, the page is loaded again, and the row's
// controls are compared. Nothing of it may show a console error.
'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { describe, test } = require('node:test');
const assert = require('node:assert/strict');
const { conCaptura } = require('./navegador.js');
const banco = require('./banco.js');

const { servidorDe, documentoDe, planta, estadoFila } = banco;

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
    test(`${caso.rack ?? 'qam'} ${caso.ruta ?? 'inputs'}: ${caso.nombre}`, () => banco.comparaConCGI(caso.nombre, { ruta: 'inputs', ...caso }));
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
        const abierta = await banco.abre(servidor, problemas, 'inputs');
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
