// The unit operations and the small windows, driven by clicks on the qam rack: what the
// operator sees and what lands on disk; the page lock is handed back every time.
'use strict';

const { describe, test } = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { enRackPropio: enRack, lee, existe } = require('./banco.js');

async function abreRuta(pagina, servidor, ruta) {
  await pagina.goto(`${servidor.url}#/${ruta}`);
  await pagina.waitForSelector(`main#contenido[data-estado="listo"][data-ruta="${ruta}"] #tabadatos`, { state: 'attached' });
}

const ventana = '#ventana-operacion';
async function esperaRespuesta(pagina, patron) {
  await pagina.waitForFunction((p) => new RegExp(p).test(document.querySelector('#ventana-operacion .ventana-respuesta')?.textContent ?? ''),
    patron.source);
  return pagina.locator(`${ventana} .ventana-respuesta`).textContent();
}

describe('advanced configuration of a unit', () => {
  const CASOS = [
    { unidad: '.010.000.000.022', boton: 'Store', ip: '10.0.0.22', doc: 'config/network.010.000.000.022.xml',
      respuesta: /Config stored \(IP: 10\.0\.0\.22/, cola: null },
    { unidad: '.010.000.000.022', boton: 'Store and send', ip: '10.0.0.22', doc: 'config/network.010.000.000.022.xml',
      respuesta: /Config Sent \(IP: 10\.0\.0\.22[\s\S]*added to the queue/,
      cola: ['config/fileschanged.list', 'network.010.000.000.022\n'] },
    { unidad: '', boton: 'Store and send', ip: '10.0.0.10', doc: 'config/network.xml', desdeLista: true,
      respuesta: /Config Sent \(IP: 10\.0\.0\.10/, cola: ['config/command.msg', '2'] }, // the command byte 50, the character "2"
  ];
  for (const caso of CASOS) {
    test(`${caso.desdeLista ? 'the unit list' : 'the model link'} opens ${caso.unidad || 'the master'} and "${caso.boton}" saves the output level`, () =>
      enRack(`avanzada-${caso.unidad}-${caso.boton}`, async ({ pagina, servidor }) => {
        await abreRuta(pagina, servidor, caso.desdeLista ? 'units' : 'network');
        await pagina.locator(caso.desdeLista ? `#contenido .operaciones-unidad[data-sufijo="${caso.unidad}"] .op-avanzada`
          : `#contenido a[href*="MostrarConfigTotal('${caso.unidad}')"]`).first().click();
        await pagina.waitForSelector(`${ventana} [name="outlev_tot"]`);
        assert.match(await pagina.locator(ventana).textContent(), /ADVANCED CONFIGURATION FOR THE UNIT ID/);
        assert.doesNotMatch(lee(servidor, caso.doc), /<NIVEL>42<\/NIVEL>/);
        await pagina.locator(`${ventana} [name="outlev_tot"]`).fill('42');
        await pagina.locator(`${ventana} button`, { hasText: new RegExp(`^${caso.boton}$`) }).click();
        const texto = await esperaRespuesta(pagina, caso.respuesta);
        assert.doesNotMatch(texto, /ERROR!|Error Storing/);
        assert.match(lee(servidor, caso.doc), /<NIVEL>42<\/NIVEL>/);
        for (const cola of ['config/fileschanged.list', 'config/command.msg'])
          assert.equal(existe(servidor, cola), caso.cola?.[0] === cola, `${cola} present`);
        if (caso.cola) assert.equal(lee(servidor, caso.cola[0]), caso.cola[1]);
      }));
  }
});

describe('service list of an IP input', () => {
  const servicios = '#ventana-servicios';
  const CASOS = [
    { boton: 'Store Changes', guarda: true },
    { boton: 'Discard Changes and Close', guarda: false },
  ];
  for (const caso of CASOS) {
    test(`"${caso.boton}" ${caso.guarda ? 'stores the ticked service' : 'leaves the document as it was'}`, () =>
      enRack(`servicios-${caso.guarda}`, async ({ pagina, servidor }) => {
        const doc = 'config/network.010.000.000.105.xml';
        const antes = lee(servidor, doc);
        await abreRuta(pagina, servidor, 'ip');
        await pagina.locator(`#contenido [onclick*="MuestraListaServicios(this,1,'_010_000_000_105')"]`).click();
        await pagina.waitForSelector(`${servicios} #slselect-1`);
        assert.match(await pagina.locator(servicios).textContent(), /INPUT 1 SERVICE LIST[\s\S]*MBRO1/);
        await pagina.locator(`${servicios} #slselect-1`).check();
        assert.equal(await pagina.locator(`${servicios} tr.servicio-elegido`).count(), 1);
        await pagina.locator(`${servicios} button`, { hasText: caso.boton }).click();
        await pagina.waitForSelector(servicios, { state: 'detached' });
        if (caso.guarda) {
          await pagina.waitForSelector('#respuesta-operacion');
          assert.notEqual(lee(servidor, doc), antes);
          assert.doesNotMatch(await pagina.locator('#respuesta-operacion').textContent(), /ERROR/);
          // Opened again, the list shows the stored choice.
          await pagina.locator(`#contenido [onclick*="MuestraListaServicios(this,1,'_010_000_000_105')"]`).click();
          await pagina.waitForSelector(`${servicios} #slselect-1`);
          assert.equal(await pagina.locator(`${servicios} #slselect-1`).isChecked(), true);
          assert.equal(await pagina.locator(`${servicios} #slselect-2`).isChecked(), false);
        } else {
          assert.equal(lee(servidor, doc), antes);
        }
      }));
  }

  test('the Select button of the advanced configuration lists the services of that window\'s unit', () =>
    enRack('servicios-avanzada', async ({ pagina, servidor }) => {
      const doc = 'config/network.010.000.000.105.xml';
      const antes = lee(servidor, doc);
      await abreRuta(pagina, servidor, 'units');
      await pagina.locator('#contenido .operaciones-unidad[data-sufijo="010.000.000.105"] .op-avanzada').click();
      await pagina.locator(`${ventana} [onclick*="MuestraListaServicios(this,1,'_tot')"]`).click();
      await pagina.waitForSelector(`${servicios} #slselect-1`);
      assert.match(await pagina.locator(servicios).textContent(), /INPUT 1 SERVICE LIST[\s\S]*MBRO1/);
      await pagina.locator(`${servicios} #slselect-1`).check();
      await pagina.locator(`${servicios} button`, { hasText: 'Store Changes' }).click();
      await pagina.waitForSelector(servicios, { state: 'detached' });
      await pagina.waitForSelector('#respuesta-operacion');
      assert.doesNotMatch(await pagina.locator('#respuesta-operacion').textContent(), /ERROR/);
      assert.notEqual(lee(servidor, doc), antes, 'the unit of the advanced window stored the choice');
      assert.equal(await pagina.locator(`${ventana} [name="outlev_tot"]`).count(), 1,
        'the advanced configuration stays open under the list');
    }));
});

describe('operations of the unit list', () => {
  const CASOS = [
    { nombre: 'firmware update of a unit', fila: '_010_000_000_105', boton: 'Update', enviar: 'Program update',
      respuesta: /Programming update for unit with id Rack A & B/, fichero: 'upload/listupdate.prg', contenido: 'network.010.000.000.105\n' },
    { nombre: 'firmware update of the master', fila: '', boton: 'Update', enviar: 'Program update',
      respuesta: /Programming update for this unit/, fichero: 'upload/listupdate.prg', contenido: 'network\n' },
    { nombre: 'remote: tune', fila: '', boton: 'Remote', enviar: 'Send',
      campos: { stbip: '10.0.0.50', comandostb: '1', mchnstb: '7' },
      respuesta: /Tuning STB at IP 10\.0\.0\.50 to major channel 7[\s\S]*Answer from STB: \[7\]/, fichero: 'root/tune_result', contenido: '[7]\n[10.0.0.50]\n' },
    { nombre: 'remote: key enter', fila: '_010_000_000_105', boton: 'Remote', enviar: 'Send',
      campos: { stbip: '10.0.0.51', comandostb: '5', stbkey: '43', stbkeyop: '3' },
      respuesta: /Sending Remote key 'enter'[\s\S]*Answer from STB: \[enter\]/, fichero: 'root/remotekey_result', contenido: '[enter]\n[2]\n[10.0.0.51]\n' },
    { nombre: 'watermarking test', fila: '', boton: 'Watermark', enviar: 'Store',
      campos: { modo: '2', waterserial: 'ABC123' },
      respuesta: /watermarking test data was stored/, fichero: 'config/watermarkingdata.conf', contenido: '2\nABC123\n' },
  ];
  for (const caso of CASOS) {
    test(caso.nombre, () => enRack(`unidades-${caso.nombre}`, async ({ pagina, servidor }) => {
      await abreRuta(pagina, servidor, 'units');
      const fila = pagina.locator('#tabadatos tr', { has: pagina.locator(`input[name="forzarconfig${caso.fila}"]`) });
      assert.equal(await fila.locator('td').count(), 8, 'the seven cells of the CGI and the operations');
      await fila.locator('button', { hasText: caso.boton }).click();
      for (const [nombre, valor] of Object.entries(caso.campos ?? {})) {
        const control = pagina.locator(`${ventana} [name="${nombre}"]`);
        if (await control.evaluate((c) => c.tagName === 'SELECT')) await control.selectOption(valor);
        else await control.fill(valor);
      }
      assert.equal(existe(servidor, caso.fichero), false);
      await pagina.locator(`${ventana} button`, { hasText: new RegExp(`^${caso.enviar}$`) }).click();
      await esperaRespuesta(pagina, caso.respuesta);
      assert.equal(lee(servidor, caso.fichero), caso.contenido);
    }));
  }

  test('firmware update under the page lock: nothing is programmed while the daemon is busy', () =>
    enRack('unidades-update-busy', async ({ pagina, servidor }) => {
      await abreRuta(pagina, servidor, 'units');
      fs.writeFileSync(path.join(servidor.raiz, 'config/control.lock'), '');
      const fila = pagina.locator('#tabadatos tr', { has: pagina.locator('input[name="forzarconfig_010_000_000_105"]') });
      await fila.locator('button', { hasText: 'Update' }).click();
      await pagina.locator(`${ventana} button`, { hasText: /^Program update$/ }).click();
      await esperaRespuesta(pagina, /busy/);
      assert.equal(existe(servidor, 'upload/listupdate.prg'), false);
    }));
});

describe('network page pop-ups fill every unit', () => {
  const CASOS = [
    { boton: 'Set Network Mask', campos: { 'valor-todas': '255.255.0.0' }, base: 'networkmask', esperado: () => '255.255.0.0' },
    { boton: 'Set Gateway IP', campos: { 'valor-todas': '10.0.0.254' }, base: 'gateway', esperado: () => '10.0.0.254' },
    { boton: 'Auto', campos: { 'inicio-orden': '20', 'paso-orden': '2' }, base: 'orden', esperado: (i) => String(20 + 2 * i) },
  ];
  for (const caso of CASOS) {
    test(caso.boton, () => enRack(`popup-${caso.base}`, async ({ pagina, servidor }) => {
      await abreRuta(pagina, servidor, 'network');
      await pagina.locator('#contenido td.ultimalinea button', { hasText: caso.boton }).click();
      for (const [nombre, valor] of Object.entries(caso.campos))
        await pagina.locator(`${ventana} [name="${nombre}"]`).fill(valor);
      await pagina.locator(`${ventana} button.aplicar-todas`).click();
      await pagina.waitForSelector(ventana, { state: 'detached' });
      const filas = await pagina.$$eval('#tabadatos tr', (trs, base) => trs
        .filter((tr) => !tr.querySelector('th') && !tr.querySelector('td.ultimalinea'))
        .map((tr) => {
          const c = [...tr.querySelectorAll('input[type="text"]')].find((i) => new RegExp(`^${base}(_\\d{3}){0,4}$`).test(i.name));
          return c && !c.disabled ? { valor: c.value, marcada: tr.classList.contains('fila-cambiada') } : null;
        }).filter(Boolean), caso.base);
      assert.ok(filas.length >= 2, `unit fields found: ${filas.length}`);
      filas.forEach((f, i) => assert.equal(f.valor, caso.esperado(i)));
      assert.ok(filas.some((f) => f.marcada), 'changed rows are marked');
    }));
  }
});
