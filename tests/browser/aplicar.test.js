// The "Apply selected" button of the configuration pages: a changed, selected unit row
// reaches its unit's document and the daemon's queue, nothing else on disk moves, and the
// page lock is always handed back (after a save, after a refused save, when the front
// panel holds the rack, when the operator leaves in the middle).
'use strict';

const { describe, test } = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { enRackPropio, lee } = require('./banco.js');

const COMANDO_PAGINA = { network: 3, inputs: 10, transport: 12, output: 13, ip: 17, test: 14 };

// Every file of the rack copy, path -> content, to compare before and after.
function fotoRack(raiz) {
  const foto = new Map();
  const recorre = (carpeta) => {
    for (const entrada of fs.readdirSync(carpeta, { withFileTypes: true })) {
      const ruta = path.join(carpeta, entrada.name);
      if (entrada.isDirectory()) recorre(ruta);
      else foto.set(path.relative(raiz, ruta), fs.readFileSync(ruta));
    }
  };
  recorre(raiz);
  return foto;
}

// What changed between two pictures of the rack: { cambiados, nuevos, borrados }.
function diferencias(antes, despues) {
  const cambiados = [];
  const nuevos = [];
  const borrados = [];
  for (const [ruta, contenido] of despues) {
    if (!antes.has(ruta)) nuevos.push(ruta);
    else if (!antes.get(ruta).equals(contenido)) cambiados.push(ruta);
  }
  for (const ruta of antes.keys()) if (!despues.has(ruta)) borrados.push(ruta);
  return { cambiados: cambiados.sort(), nuevos: nuevos.sort(), borrados: borrados.sort() };
}

async function abreRuta(pagina, servidor, ruta) {
  await pagina.goto(`${servidor.url}#/${ruta}`);
  await pagina.waitForSelector(`main#contenido[data-estado="listo"][data-ruta="${ruta}"] button.aplicar`,
    { state: 'attached' });
}

// Changes one control the way the operator does, so the page's own handlers run.
async function cambia(pagina, nombre, valor) {
  const control = pagina.locator(`#contenido [name="${nombre}"]`);
  assert.equal(await control.count(), 1, `one control named ${nombre}`);
  const tipo = await control.evaluate((el) => (el.tagName === 'SELECT' ? 'select' : el.type));
  if (tipo === 'select') {
    await control.selectOption(String(valor));
  } else if (tipo === 'checkbox') {
    await control.setChecked(Boolean(valor), { force: true });
  } else {
    await control.fill(String(valor));
    await control.dispatchEvent('change');
  }
  await control.dispatchEvent('blur');
}

// Ticks the unit's select box and clears the others (the page ticks units the web changed
// earlier, and the change-tracking script may tick more), so exactly that unit is applied.
async function selecciona(pagina, sufijo) {
  await pagina.locator(`#contenido input[name="forzarconfig${sufijo}"]`).setChecked(true);
  await pagina.$$eval('#contenido input[type="checkbox"][name^="forzarconfig"]', (cajas, propia) => {
    for (const caja of cajas) if (caja.name !== propia) caja.checked = false;
  }, `forzarconfig${sufijo}`);
}

// Clicks Apply and waits until the page has come again with the answers kept on screen.
async function aplicaYEspera(pagina, ruta) {
  const recarga = pagina.waitForResponse((r) =>
    new RegExp(`/cgi-bin/cambioIP\\.cgi\\?command=${COMANDO_PAGINA[ruta]}$`).test(r.url()));
  await pagina.locator('#contenido button.aplicar').click();
  await recarga;
  await pagina.waitForSelector(
    `main#contenido[data-estado="listo"][data-ruta="${ruta}"] #resultado .unidad-aplicada`, { state: 'attached' });
}

async function respuestas(pagina) {
  return pagina.$$eval('#resultado .unidad-aplicada', (lineas) => lineas.map((l) => ({
    unidad: l.dataset.unidad, estado: l.dataset.estado, texto: l.textContent.replace(/\s+/g, ' ').trim(),
  })));
}

function cuerpoPost(peticion) {
  return new URLSearchParams(peticion.replace(/^POST /, ''));
}

// One change per configuration page, on one unit (or the master): the control, its new
// value, the document the save writes and what that document must hold afterwards.
const CASOS = [
  { ruta: 'network', comando: 4, unidad: '10.0.0.22', control: 'orden', valor: '12',
    guarda: /<NETWORK>[\s\S]*<ORDEN>12<\/ORDEN>[\s\S]*<\/NETWORK>/ },
  { ruta: 'inputs', comando: 11, unidad: '10.0.0.21', control: 'vidbit1', valor: '9',
    guarda: /<ENTRADA1>[\s\S]*?<BITRATE>\s*<VIDEO>9<\/VIDEO>[\s\S]*?<\/ENTRADA1>/ },
  { ruta: 'transport', comando: 20, unidad: '10.0.0.22', control: 'tsid', valor: '2345',
    guarda: /<TSID>2345<\/TSID>/ },
  { ruta: 'output', comando: 21, unidad: '10.0.0.22', control: 'outlev', valor: '42',
    guarda: /<SALIDAQAM>[\s\S]*?<NIVEL>42<\/NIVEL>[\s\S]*?<\/SALIDAQAM>/ },
  { ruta: 'test', comando: 22, unidad: '10.0.0.21', control: 'tled', valor: true,
    guarda: /<TEST>[\s\S]*?<LED>1<\/LED>[\s\S]*?<\/TEST>/ },
  { ruta: 'ip', comando: 28, unidad: '10.0.0.105', control: 'outputIP1', valor: '239.50.0.9',
    guarda: /<SALIDA1>[\s\S]*?<IPDEST>239\.50\.0\.9<\/IPDEST>[\s\S]*?<\/SALIDA1>/ },
  { ruta: 'transport', comando: 20, unidad: 'master', control: 'tsid', valor: '1234',
    guarda: /<TSID>1234<\/TSID>/ },
  { ruta: 'output', comando: 21, unidad: 'master', control: 'outlev', valor: '37',
    guarda: /<SALIDAQAM>[\s\S]*?<NIVEL>37<\/NIVEL>[\s\S]*?<\/SALIDAQAM>/ },
];

// 10.0.0.22 -> "_010_000_000_022", the master -> "".
function sufijoDe(unidad) {
  return unidad === 'master' ? '' : `_${unidad.split('.').map((n) => n.padStart(3, '0')).join('_')}`;
}
function documentoDe(unidad) {
  return unidad === 'master' ? 'config/network.xml' : `config/network${sufijoDe(unidad).replaceAll('_', '.')}.xml`;
}

describe('Apply saves the selected unit and nothing else', () => {
  for (const caso of CASOS) {
    test(`${caso.ruta}: ${caso.control} of ${caso.unidad} (save command ${caso.comando})`, () =>
      enRackPropio(`apply-${caso.ruta}-${caso.unidad}`, async ({ pagina, servidor, peticiones }) => {
        const sufijo = sufijoDe(caso.unidad);
        const documento = documentoDe(caso.unidad);
        await abreRuta(pagina, servidor, caso.ruta);
        const antes = fotoRack(servidor.raiz);
        assert.doesNotMatch(lee(servidor, documento), caso.guarda, 'the fixture already holds the new value');

        await cambia(pagina, `${caso.control}${sufijo}`, caso.valor);
        await selecciona(pagina, sufijo);
        await aplicaYEspera(pagina, caso.ruta);

        const lineas = await respuestas(pagina);
        assert.equal(lineas.length, 1, `one answer: ${JSON.stringify(lineas)}`);
        assert.equal(lineas[0].estado, 'ok', lineas[0].texto);
        assert.match(lineas[0].texto, new RegExp(`Changes saved for ip ${caso.unidad === 'master' ? '10\\.0\\.0\\.10' :
          caso.unidad.replaceAll('.', '\\.')}\\b`));
        assert.doesNotMatch(lineas[0].texto, /ERROR!/);

        // The lock was taken, one unit posted with the suffix stripped, the lock released.
        const cgi = peticiones.filter((p) => !/^GET command=(3|10|12|13|14|15|17)$/.test(p));
        assert.deepEqual(cgi.map((p) => p.replace(/^POST .*/, 'POST')), ['GET command=5', 'POST', 'GET command=6']);
        const cuerpo = cuerpoPost(cgi[1]);
        // The CGI takes the first "sufijo" anywhere in the form: no value may come before it.
        assert.deepEqual([...cuerpo.keys()].slice(0, 2), ['command', 'sufijo']);
        assert.equal(cuerpo.get('command'), String(caso.comando));
        assert.equal(cuerpo.get('sufijo'), sufijo.replaceAll('_', '.'));
        assert.ok([...cuerpo.keys()].every((k) => !/_\d{3}_\d{3}_\d{3}_\d{3}$/.test(k)), `suffix left in ${cgi[1]}`);

        // On disk: the unit's document holds the value, it is queued (the master: the
        // command file), every other file is byte for byte what it was, the lock is gone.
        assert.match(lee(servidor, documento), caso.guarda);
        const cambios = diferencias(antes, fotoRack(servidor.raiz));
        if (caso.unidad === 'master') {
          assert.deepEqual(cambios, { cambiados: [documento], nuevos: ['config/command.msg'], borrados: [] });
          assert.equal(lee(servidor, 'config/command.msg'), '2');
        } else {
          assert.deepEqual(cambios, { cambiados: [documento], nuevos: ['config/fileschanged.list'], borrados: [] });
          assert.equal(lee(servidor, 'config/fileschanged.list'), `network${sufijo.replaceAll('_', '.')}\n`);
        }
        assert.equal(fs.existsSync(path.join(servidor.raiz, 'config/web.lock')), false, 'config/web.lock is left');

        // The page came again with the saved value.
        const control = pagina.locator(`#contenido [name="${caso.control}${sufijo}"]`);
        if (typeof caso.valor === 'boolean') assert.equal(await control.isChecked(), caso.valor);
        else assert.equal(await control.inputValue(), caso.valor);
      }));
  }
});

describe('Apply hands the lock back when a save fails', () => {
  const FALLOS = [
    { nombre: 'a unit without IP output, selected on the IP page', ruta: 'ip', unidad: '10.0.0.21',
      mensaje: /BAD data[\s\S]*ERROR! Invalid Data/ },
    // The browser's own check refuses this address first; here it is made to let every value
    // through, as an older page script would, so the CGI's refusal is what the operator sees.
    { nombre: 'an address the CGI refuses', ruta: 'network', unidad: '10.0.0.22', sinComprobacion: true,
      control: 'networkipdir', valor: '10.0.0.300', mensaje: /Refused value for networkipdir/ },
  ];
  for (const caso of FALLOS) {
    test(`${caso.ruta}: ${caso.nombre}`, () =>
      enRackPropio(`fails-${caso.ruta}`, async ({ pagina, servidor, peticiones }) => {
        const sufijo = sufijoDe(caso.unidad);
        await abreRuta(pagina, servidor, caso.ruta);
        if (caso.control) await cambia(pagina, `${caso.control}${sufijo}`, caso.valor);
        if (caso.sinComprobacion) await pagina.evaluate(() => { window.camposRechazados = () => []; });
        await selecciona(pagina, sufijo);
        await aplicaYEspera(pagina, caso.ruta);

        const lineas = await respuestas(pagina);
        assert.equal(lineas.length, 1);
        assert.equal(lineas[0].estado, 'fallo', lineas[0].texto);
        assert.match(lineas[0].texto, caso.mensaje);
        assert.equal(await pagina.locator('#resultado.error').count(), 1, 'the panel shows a failure');
        assert.ok(peticiones.includes('GET command=6'), 'the lock was released');
        assert.equal(fs.existsSync(path.join(servidor.raiz, 'config/web.lock')), false, 'config/web.lock is left');
        assert.equal(fs.existsSync(path.join(servidor.raiz, 'config/fileschanged.list')), false, 'a unit was queued');
      }));
  }
});

describe('Apply with nothing to send or a busy rack', () => {
  test('busy: with config/control.lock present nothing is posted; Retry applies once it is gone', () =>
    enRackPropio('busy', async ({ pagina, servidor, peticiones }) => {
      await abreRuta(pagina, servidor, 'network');
      await cambia(pagina, 'orden_010_000_000_022', '12');
      await selecciona(pagina, '_010_000_000_022');
      const antes = fotoRack(servidor.raiz);

      await pagina.locator('#contenido button.aplicar').click();
      await pagina.waitForSelector('#resultado button.reintentar');
      assert.match(await pagina.locator('#resultado').textContent(),
        /The front panel or the control daemon is busy; try again/);
      assert.deepEqual(peticiones.filter((p) => p.startsWith('POST')), [], 'a save was posted while busy');
      assert.deepEqual(diferencias(antes, fotoRack(servidor.raiz)), { cambiados: [], nuevos: [], borrados: [] });

      fs.rmSync(path.join(servidor.raiz, 'config/control.lock'));
      const recarga = pagina.waitForResponse((r) => /\?command=3$/.test(r.url()));
      await pagina.locator('#resultado button.reintentar').click();
      await recarga;
      await pagina.waitForSelector('main#contenido[data-estado="listo"] #resultado .unidad-aplicada');
      assert.match(lee(servidor, 'config/network.010.000.000.022.xml'), /<ORDEN>12<\/ORDEN>/);
      assert.equal(fs.existsSync(path.join(servidor.raiz, 'config/web.lock')), false, 'config/web.lock is left');
    }, { preparar: (servidor) => fs.writeFileSync(path.join(servidor.raiz, 'config/control.lock'), '') }));

  test('no unit selected: says so and asks for no lock', () =>
    enRackPropio('none-selected', async ({ pagina, servidor, peticiones }) => {
      await abreRuta(pagina, servidor, 'output');
      await pagina.$$eval('#contenido input[name^="forzarconfig"]', (cajas) => {
        for (const caja of cajas) caja.checked = false;
      });
      const antes = fotoRack(servidor.raiz);
      await pagina.locator('#contenido button.aplicar').click();
      await pagina.waitForFunction(() => /No unit is selected/.test(document.getElementById('resultado')?.textContent));
      assert.deepEqual(peticiones.filter((p) => !/^GET command=(13|15)$/.test(p)), []);
      assert.deepEqual(diferencias(antes, fotoRack(servidor.raiz)), { cambiados: [], nuevos: [], borrados: [] });
    }));

  test('refused values: names them and asks for no lock', () =>
    enRackPropio('refused', async ({ pagina, servidor, peticiones }) => {
      await abreRuta(pagina, servidor, 'transport');
      await selecciona(pagina, '_010_000_000_022');
      await pagina.evaluate(() => { window.camposRechazados = () => ['tsid_010_000_000_022']; });
      await pagina.locator('#contenido button.aplicar').click();
      await pagina.waitForFunction(() => /tsid_010_000_000_022/.test(document.getElementById('resultado')?.textContent));
      assert.deepEqual(peticiones.filter((p) => !/^GET command=(12|15)$/.test(p)), []);
      assert.equal(fs.existsSync(path.join(servidor.raiz, 'config/web.lock')), false);
    }));

  test('leaving the page while a save is under way releases the lock', () =>
    enRackPropio('leave', async ({ pagina, servidor }) => {
      await abreRuta(pagina, servidor, 'output');
      await cambia(pagina, 'outlev_010_000_000_022', '42');
      await selecciona(pagina, '_010_000_000_022');
      // The save is held in the browser until the operator has gone to another page.
      let suelta;
      const retenida = new Promise((resolve) => { suelta = resolve; });
      let llego;
      const llegada = new Promise((resolve) => { llego = resolve; });
      await pagina.route(/cambioIP\.cgi$/, async (ruta) => {
        if (ruta.request().method() !== 'POST' || !/command=21/.test(ruta.request().postData() ?? '')) {
          await ruta.continue();
          return;
        }
        llego();
        await retenida;
        await ruta.abort().catch(() => {});
      });
      await pagina.locator('#contenido button.aplicar').click();
      await llegada;
      assert.equal(fs.existsSync(path.join(servidor.raiz, 'config/web.lock')), true, 'the lock was taken');
      const libera = pagina.waitForRequest((p) => p.url().includes('cambioIP.cgi') &&
        (p.postData() ?? '').includes('command=6'));
      await pagina.evaluate(() => { location.hash = '#/network'; });
      await libera;
      suelta();
      await pagina.waitForSelector('main#contenido[data-estado="listo"][data-ruta="network"]');
      // The release was sent with the page's leaving; its answer removes the file.
      for (let i = 0; i < 200 && fs.existsSync(path.join(servidor.raiz, 'config/web.lock')); i++)
        await new Promise((r) => setTimeout(r, 50));
      assert.equal(fs.existsSync(path.join(servidor.raiz, 'config/web.lock')), false, 'config/web.lock is left');
      assert.doesNotMatch(lee(servidor, 'config/network.010.000.000.022.xml'), /<NIVEL>42<\/NIVEL>/);
    }));
});

describe('After Apply the page follows the saved unit until the daemon has applied it', () => {
  // What the control daemon does once it has applied a unit: clears its pending flag.
  const aplicaComoElDaemon = (servidor, documento) => fs.writeFileSync(path.join(servidor.raiz, documento),
    lee(servidor, documento).replace('<CAMBIOSWEB>1</CAMBIOSWEB>', '<CAMBIOSWEB>0</CAMBIOSWEB>'));
  const seguimiento = (pagina) => pagina.locator('#resultado p.seguimiento').textContent();
  const seleccionPintada = (pagina, sufijo) =>
    pagina.$eval(`#contenido input[name="forzarconfig${sufijo}"]`, (caja) => caja.defaultChecked);

  test('pending while the unit is queued, applied once the daemon has cleared its flag', () =>
    enRackPropio('follow-applied', async ({ pagina, servidor }) => {
      await abreRuta(pagina, servidor, 'network');
      await cambia(pagina, 'orden_010_000_000_022', '12');
      await selecciona(pagina, '_010_000_000_022');
      await aplicaYEspera(pagina, 'network');
      assert.equal(await seguimiento(pagina), 'Waiting for the rack to apply the changes (pending: 10.0.0.22).');
      assert.equal(await seleccionPintada(pagina, '_010_000_000_022'), true, 'the page shows the unit pending');

      aplicaComoElDaemon(servidor, 'config/network.010.000.000.022.xml');
      await pagina.waitForFunction(() =>
        document.querySelector('#resultado p.seguimiento')?.textContent === 'The rack has applied the changes.');
      assert.equal(await seleccionPintada(pagina, '_010_000_000_022'), false, 'the unit is shown applied');
      assert.equal(await pagina.locator('#resultado .unidad-aplicada[data-estado="ok"]').count(), 1,
        'the save\'s answer stays on screen');
    }));

  test('an edit of the page stops the reloading, so nothing the operator types is lost', () =>
    enRackPropio('follow-edited', async ({ pagina, servidor, peticiones }) => {
      await abreRuta(pagina, servidor, 'network');
      await cambia(pagina, 'orden_010_000_000_022', '12');
      await selecciona(pagina, '_010_000_000_022');
      await aplicaYEspera(pagina, 'network');
      await cambia(pagina, 'orden_010_000_000_021', '7');
      const cargas = peticiones.length;
      await new Promise((r) => setTimeout(r, 4000));
      assert.deepEqual(peticiones.slice(cargas), [], 'the page was loaded again over the edit');
      assert.equal(await pagina.inputValue('#contenido [name="orden_010_000_000_021"]'), '7');
      assert.match(await seguimiento(pagina), /^The page was edited, so it is not loaded again \(pending: 10\.0\.0\.22\)\.$/);
    }));
});
