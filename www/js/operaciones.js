// operaciones.js: the operations on one unit and the small windows of the pages. The
// advanced configuration of a unit and the service list of an IP input open in a window
// over the page; the unit list gets, per unit, the firmware update programming, the
// set-top-box remote and the watermarking test; the network page's buttons set one mask,
// one gateway or consecutive order numbers in every unit's row. Every answer of the CGI is
// shown to the operator.
'use strict';

(() => {
  const CGI = 'cgi-bin/cambioIP.cgi';
  // A unit's controls end in its address as _ddd_ddd_ddd_ddd; the master's carry nothing.
  const SUFIJO = /_\d{3}_\d{3}_\d{3}_\d{3}$/;
  // Controls of the advanced page whose name differs from the key the save reads.
  const RENOMBRES_TOTAL = { lmask: 'networkmask', lgate: 'gateway', dhcpcheck: 'dhcp' };
  // The remote's keys, numbered from 1 as the CGI numbers them.
  const TECLAS = ['power', 'poweron', 'poweroff', 'format', 'pause', 'rew', 'replay', 'stop',
    'advance', 'ffwd', 'record', 'play', 'guide', 'active', 'list', 'exit', 'back', 'menu',
    'info', 'up', 'down', 'left', 'right', 'select', 'red', 'green', 'yellow', 'blue', 'chanup',
    'chandown', 'prev', '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'dash', 'enter'];
  const ACCIONES_STB = ['Tune to major channel', 'Power on', 'Power off', 'Reset', 'Send key'];
  const ACCIONES_TECLA = ['keyUp', 'keyDown', 'keyPress'];
  const IP = /^(25[0-5]|2[0-4]\d|1\d\d|[1-9]?\d)(\.(25[0-5]|2[0-4]\d|1\d\d|[1-9]?\d)){3}$/;

  const contenido = document.getElementById('contenido');
  const VENTANA_SERVICIOS = 'ventana-servicios';

  function cuerpoDe(html) {
    const inicio = html.indexOf('<body>');
    const fin = html.lastIndexOf('</body>');
    return (inicio < 0 ? html : html.slice(inicio + 6, fin < 0 ? html.length : fin)).trim();
  }

  async function pide(parametros, { post = false } = {}) {
    const cuerpo = new URLSearchParams(parametros);
    const respuesta = post
      ? await fetch(CGI, { method: 'POST', body: cuerpo, cache: 'no-store' })
      : await fetch(`${CGI}?${cuerpo}`, { cache: 'no-store' });
    if (!respuesta.ok)
      throw new Error(`the web server answered ${respuesta.status}`);
    return respuesta.text();
  }

  // Runs `accion` holding the page lock, so the front panel and the control daemon do not
  // change the unit at the same time; the lock is always handed back, also when the answer to
  // the request for it was lost (the program may have taken it all the same).
  async function conBloqueo(accion) {
    let respuesta;
    try {
      respuesta = await pide({ command: '5' });
    } catch (error) {
      await pide({ command: '6' }).catch(() => {});
      throw error;
    }
    if (respuesta === '1')
      throw new Error('the front panel or the control daemon is busy; try again');
    if (respuesta !== '0') {
      await pide({ command: '6' }).catch(() => {});
      throw new Error(`the page lock could not be taken (answer "${respuesta.slice(0, 80)}")`);
    }
    try {
      return await accion();
    } finally {
      await pide({ command: '6' }).catch(() => {});
    }
  }

  // The window over the page: a title, its content, an answer area and a Close button. The
  // service list has a window of its own, so that it can open over the advanced configuration.
  function abreVentana(titulo, id = 'ventana-operacion') {
    cierraVentana(id);
    const fondo = document.createElement('div');
    fondo.id = id;
    fondo.setAttribute('role', 'dialog');
    fondo.setAttribute('aria-label', titulo);
    fondo.style.cssText = 'position:fixed;inset:0;background:rgba(0,0,0,.35);z-index:50;overflow:auto;';
    const caja = document.createElement('div');
    caja.className = 'ventana-caja';
    caja.style.cssText = 'background:#fff;margin:3em auto;padding:1em;max-width:95%;width:max-content;';
    const cabecera = document.createElement('h2');
    cabecera.textContent = titulo;
    const cuerpo = document.createElement('div');
    cuerpo.className = 'ventana-cuerpo';
    const respuesta = document.createElement('div');
    respuesta.className = 'ventana-respuesta';
    respuesta.setAttribute('role', 'status');
    const cerrar = document.createElement('button');
    cerrar.type = 'button';
    cerrar.className = 'ventana-cerrar';
    cerrar.textContent = 'Close';
    cerrar.addEventListener('click', () => cierraVentana(id));
    caja.append(cabecera, cuerpo, respuesta, cerrar);
    fondo.append(caja);
    document.body.append(fondo);
    return { cuerpo, respuesta, caja };
  }

  function cierraVentana(id = 'ventana-operacion') {
    document.getElementById(id)?.remove();
  }

  function muestraRespuesta(zona, html, { error = false } = {}) {
    zona.classList.toggle('error', error);
    zona.innerHTML = html;
  }

  function muestraError(zona, texto) {
    zona.classList.add('error');
    zona.textContent = texto;
  }

  function boton(texto, clase, accion) {
    const b = document.createElement('button');
    b.type = 'button';
    b.className = clase;
    b.textContent = texto;
    b.addEventListener('click', accion);
    return b;
  }

  // The answers that stay after a window is closed.
  function zonaGeneral() {
    let zona = document.getElementById('respuesta-operacion');
    if (!zona) {
      zona = document.createElement('div');
      zona.id = 'respuesta-operacion';
      zona.setAttribute('role', 'status');
      contenido.before(zona);
    }
    return zona;
  }

  const sinPunto = (nombre) => String(nombre ?? '').replace(/^[._]/, '').replaceAll('_', '.');

  // The advanced save's form: every "_tot" control under its base name, per-line controls
  // joined as "<line>_<value>_...", values kept only in a twin or a hidden block taken from there.
  function formularioTotal(zona, sufijo, enviar) {
    const gemelos = new Map();
    for (const oculto of zona.querySelectorAll('div[id$="_tot"].fondotranslucido'))
      gemelos.set(oculto.id.slice(0, -4), oculto.textContent.trim());
    const controles = zona.querySelectorAll('input[name$="_tot"], select[name$="_tot"], textarea[name$="_tot"]');
    const formulario = window.formularioControles(controles, (nombre) => nombre.slice(0, -4),
      { comando: 25, sufijo, renombres: RENOMBRES_TOTAL, gemelos, sinGemelo: ['idunit', 'tipounidad'] });
    formulario.append('cfgtotenviar', enviar ? '1' : '0');
    return formulario;
  }

  // Opens the advanced configuration of one unit ('' is the master).
  async function MostrarConfigTotal(nombre) {
    const sufijo = sinPunto(nombre);
    const { cuerpo, respuesta, caja } = abreVentana(`Advanced configuration of ${sufijo || 'the master'}`);
    caja.dataset.sufijo = sufijo;
    respuesta.textContent = 'Loading…';
    try {
      cuerpo.innerHTML = cuerpoDe(await pide({ command: '24', sufijo }));
      respuesta.textContent = '';
    } catch (error) {
      muestraError(respuesta, `The advanced configuration could not be loaded: ${error.message}.`);
      return;
    }
    const guarda = async (enviar) => {
      for (const b of caja.querySelectorAll('button.guardar-total')) b.disabled = true;
      respuesta.classList.remove('error');
      respuesta.textContent = 'Storing configuration…';
      try {
        const formulario = formularioTotal(cuerpo, sufijo, enviar);
        const html = await conBloqueo(() => pide(formulario, { post: true }));
        muestraRespuesta(respuesta, cuerpoDe(html), { error: /ERROR!|Error Storing|Refused/.test(html) });
      } catch (error) {
        muestraError(respuesta, `Nothing was stored: ${error.message}.`);
      } finally {
        for (const b of caja.querySelectorAll('button.guardar-total')) b.disabled = false;
      }
    };
    const botones = document.createElement('p');
    botones.append(
      boton('Store', 'guardar-total guardar', () => guarda(false)), ' ',
      boton('Store and send', 'guardar-total enviar', () => guarda(true)));
    cuerpo.after(botones);
  }

  // Opens the service list of an IP input of a unit: the "Select" button of the IP page names
  // the unit; on the advanced configuration ("_tot") it is the unit of that window.
  async function MuestraListaServicios(_boton, entrada, sufijo) {
    const unidad = sufijo === '_tot'
      ? document.querySelector('#ventana-operacion .ventana-caja')?.dataset.sufijo ?? ''
      : sinPunto(sufijo);
    const { cuerpo, respuesta } = abreVentana(`Services of IP input ${entrada}`, VENTANA_SERVICIOS);
    respuesta.textContent = 'Loading…';
    try {
      cuerpo.innerHTML = cuerpoDe(await pide({ command: '29', sufijo: unidad, entip: String(entrada), total: '0' }));
      respuesta.textContent = '';
    } catch (error) {
      muestraError(respuesta, `The service list could not be loaded: ${error.message}.`);
    }
    for (const caja of cuerpo.querySelectorAll('input[name^="slselect-"]'))
      caja.closest('tr')?.classList.toggle('servicio-elegido', caja.checked);
  }

  // A service ticked or unticked: its row shows whether it goes to the output.
  function SelectServiceList(caja) {
    caja?.closest?.('tr')?.classList.toggle('servicio-elegido', Boolean(caja.checked));
  }

  const textoDe = (zona, id) => zona.querySelector(`[id="${id}"]`)?.textContent.trim() ?? '';

  // "1" stores the list's choice in the unit's document; "0" discards it. Either way the
  // list closes; the answer stays above the page.
  async function GrabarListaServicios(guardar) {
    const ventana = document.getElementById(VENTANA_SERVICIOS);
    if (!ventana)
      return;
    if (String(guardar) !== '1') {
      cierraVentana(VENTANA_SERVICIOS);
      return;
    }
    const cuerpo = ventana.querySelector('.ventana-cuerpo');
    const respuesta = ventana.querySelector('.ventana-respuesta');
    const servicios = Number(textoDe(cuerpo, 'lsnumserv')) || 0;
    const pares = { slselect: [], cnamOUT: [], svcidOUT: [] };
    for (let j = 1; j <= servicios; j++) {
      const caja = cuerpo.querySelector(`[id="slselect-${j}"]`);
      if (!caja) continue;
      pares.slselect.push(`${j}_${caja.checked ? '1' : '0'}`);
      pares.cnamOUT.push(`${j}_${textoDe(cuerpo, `cnamOUT-${j}`)}`);
      pares.svcidOUT.push(`${j}_${textoDe(cuerpo, `svcidOUT-${j}`)}`);
    }
    const formulario = new URLSearchParams({
      command: '30', sufijo: textoDe(cuerpo, 'idunit_tot'), entip: textoDe(cuerpo, 'entip'),
      lsnumserv: String(servicios), slselect: pares.slselect.join('_'),
      cnamOUT: pares.cnamOUT.join('_'), svcidOUT: pares.svcidOUT.join('_'),
    });
    const aviso = cuerpo.querySelector('#grabandolista');
    if (aviso) aviso.style.display = '';
    try {
      const html = cuerpoDe(await conBloqueo(() => pide(formulario, { post: true })));
      cierraVentana(VENTANA_SERVICIOS);
      muestraRespuesta(zonaGeneral(), html || 'The service list was stored; send it with "Apply selected".',
        { error: /ERROR!/.test(html) });
    } catch (error) {
      if (aviso) aviso.style.display = 'none';
      muestraError(respuesta, `The service list was not stored: ${error.message}.`);
    }
  }

  function etiqueta(texto, control) {
    const l = document.createElement('label');
    l.append(`${texto} `, control);
    const p = document.createElement('p');
    p.append(l);
    return p;
  }

  function campo(nombre, { tipo = 'text', valor = '' } = {}) {
    const c = document.createElement('input');
    c.type = tipo;
    c.name = nombre;
    c.value = valor;
    return c;
  }

  function lista(nombre, opciones) {
    const s = document.createElement('select');
    s.name = nombre;
    opciones.forEach((texto, i) => s.add(new Option(`${i + 1} - ${texto}`, String(i + 1))));
    return s;
  }

  // Sends one operation and shows its answer; with `bloqueo`, under the page lock (the
  // operation changes a unit's document).
  async function enviaOperacion(zona, parametros, siVacio, { bloqueo = false } = {}) {
    zona.classList.remove('error');
    zona.textContent = 'Sending…';
    try {
      const envia = () => pide(parametros, { post: true });
      const html = cuerpoDe(await (bloqueo ? conBloqueo(envia) : envia()));
      muestraRespuesta(zona, html || siVacio, { error: /ERROR!|Refused|failed/i.test(html) });
    } catch (error) {
      muestraError(zona, `The request was not sent: ${error.message}.`);
    }
  }

  function ventanaFirmware(sufijo, unidad) {
    const { cuerpo, respuesta } = abreVentana(`Firmware update of ${unidad}`);
    cuerpo.textContent = `The uploaded firmware is programmed for ${unidad}.`;
    cuerpo.append(boton('Program update', 'programar-update',
      () => enviaOperacion(respuesta, { command: '23', sufijo }, 'The update was programmed.', { bloqueo: true })));
  }

  function ventanaRemoto(unidad) {
    const { cuerpo, respuesta } = abreVentana(`Set-top-box remote (${unidad})`);
    const ip = campo('stbip');
    const accion = lista('comandostb', ACCIONES_STB);
    const canal = campo('mchnstb');
    const tecla = lista('stbkey', TECLAS);
    const opTecla = lista('stbkeyop', ACCIONES_TECLA);
    opTecla.value = '3';
    cuerpo.append(etiqueta('Box address', ip), etiqueta('Action', accion), etiqueta('Major channel', canal),
      etiqueta('Key', tecla), etiqueta('Key action', opTecla));
    cuerpo.append(boton('Send', 'enviar-stb', () => {
      if (!IP.test(ip.value.trim())) {
        muestraError(respuesta, 'Give the box address as four numbers 0-255 (e.g. 10.0.0.50).');
        return;
      }
      enviaOperacion(respuesta, {
        command: '27', stbip: ip.value.trim(), comandostb: accion.value, mchnstb: canal.value.trim(),
        stbkey: tecla.value, stbkeyop: opTecla.value,
      }, 'The set-top box gave no answer.');
    }));
  }

  function ventanaMarcaAgua(unidad) {
    const { cuerpo, respuesta } = abreVentana(`Watermarking test (${unidad})`);
    const modo = campo('modo');
    const serie = campo('waterserial');
    cuerpo.append(etiqueta('Mode', modo), etiqueta('Serial', serie));
    cuerpo.append(boton('Store', 'enviar-marca', () => {
      if (!modo.value || !serie.value || /[\r\n]/.test(modo.value + serie.value)) {
        muestraError(respuesta, 'Give both a mode and a serial, each on one line.');
        return;
      }
      enviaOperacion(respuesta, { command: '26', modo: modo.value, waterserial: serie.value },
        'The watermarking test data was stored.');
    }));
  }

  // The unit list: one more cell per unit row with its operations. The CGI's cells stay as
  // they are and come first, so sorting by them is unchanged.
  function anadeOperaciones() {
    const tabla = document.getElementById('tabadatos');
    if (!tabla || tabla.querySelector('.operaciones-unidad'))
      return;
    for (const fila of tabla.rows) {
      if (fila.querySelector(':scope > th')) {
        const th = document.createElement('th');
        th.className = 'cabeceraTabla';
        th.textContent = 'Operations';
        fila.append(th);
        continue;
      }
      if (fila.querySelector(':scope > td.ultimalinea')) {
        const td = document.createElement('td');
        td.className = 'ultimalinea';
        fila.append(td);
        continue;
      }
      const caja = fila.querySelector('input[type="checkbox"][name^="forzarconfig"]');
      if (!caja) continue;
      const resto = caja.name.slice('forzarconfig'.length);
      if (resto !== '' && !SUFIJO.test(resto)) continue;
      const sufijo = sinPunto(resto);
      const unidad = fila.cells[3]?.textContent.trim() || sufijo || 'master';
      const td = document.createElement('td');
      td.className = 'operaciones-unidad';
      td.dataset.sufijo = sufijo;
      td.append(
        boton('Advanced', 'op-avanzada', () => MostrarConfigTotal(sufijo)), ' ',
        boton('Update', 'op-update', () => ventanaFirmware(sufijo, unidad)), ' ',
        boton('Remote', 'op-remoto', () => ventanaRemoto(unidad)), ' ',
        boton('Watermark', 'op-marca', () => ventanaMarcaAgua(unidad)));
      fila.append(td);
    }
  }

  // The unit rows of the network page's table.
  function filasDeUnidades() {
    const tabla = document.getElementById('tabadatos');
    if (!tabla) return [];
    return [...tabla.rows].filter((f) => !f.querySelector(':scope > th') && !f.querySelector(':scope > td.ultimalinea'));
  }

  // Sets a text field as the operator would, so its own checks and the change tracking run.
  function ponValor(control, valor) {
    if (control.value === valor) return;
    control.value = valor;
    control.dispatchEvent(new Event('input', { bubbles: true }));
    control.dispatchEvent(new Event('change', { bubbles: true }));
    control.dispatchEvent(new FocusEvent('blur'));
  }

  function rellenaCampo(base, valor) {
    const patron = new RegExp(`^${base}(_\\d{3}_\\d{3}_\\d{3}_\\d{3})?$`);
    for (const fila of filasDeUnidades())
      for (const control of fila.querySelectorAll('input[type="text"]'))
        if (patron.test(control.name) && !control.disabled && !control.readOnly)
          ponValor(control, valor);
  }

  function ventanaDireccion(titulo, base, ejemplo) {
    const { cuerpo, respuesta } = abreVentana(titulo);
    const valor = campo('valor-todas', { valor: ejemplo });
    cuerpo.append(etiqueta('Value for every unit', valor), boton('Set', 'aplicar-todas', () => {
      const texto = valor.value.trim();
      if (!IP.test(texto)) {
        muestraError(respuesta, 'Give an address as four numbers 0-255.');
        return;
      }
      rellenaCampo(base, texto);
      cierraVentana();
    }));
  }

  function ActivarPopUpNetworkMask() {
    ventanaDireccion('Network mask for every unit', 'networkmask', '255.255.255.0');
  }

  function ActivarPopUpGatewayIP() {
    ventanaDireccion('Gateway for every unit', 'gateway', '');
  }

  function ActivarPopUpAutoNumber() {
    const { cuerpo, respuesta } = abreVentana('Order numbers for every unit');
    const inicio = campo('inicio-orden', { valor: '1' });
    const paso = campo('paso-orden', { valor: '1' });
    cuerpo.append(etiqueta('First number', inicio), etiqueta('Step', paso), boton('Number', 'aplicar-todas', () => {
      const a = Number(inicio.value);
      const b = Number(paso.value);
      if (!Number.isInteger(a) || a < 1 || !Number.isInteger(b) || b < 1) {
        muestraError(respuesta, 'Give whole numbers of 1 or more.');
        return;
      }
      let numero = a;
      for (const fila of filasDeUnidades()) {
        const control = [...fila.querySelectorAll('input[type="text"]')]
          .find((c) => /^orden(_\d{3}_\d{3}_\d{3}_\d{3})?$/.test(c.name) && !c.disabled && !c.readOnly);
        if (!control) continue;
        ponValor(control, String(numero));
        numero += b;
      }
      cierraVentana();
    }));
  }

  // A new route closes the window and the last answer; the periodic refresh of a status
  // page loads the same route again and leaves them open.
  let rutaCargada = null;
  document.addEventListener('paginacargada', (evento) => {
    const ruta = evento.detail?.ruta;
    if (ruta !== rutaCargada) {
      cierraVentana();
      cierraVentana(VENTANA_SERVICIOS);
      document.getElementById('respuesta-operacion')?.remove();
    }
    rutaCargada = ruta;
    if (ruta === 'units')
      anadeOperaciones();
  });

  Object.assign(window, {
    MostrarConfigTotal, MuestraListaServicios, SelectServiceList, GrabarListaServicios,
    ActivarPopUpNetworkMask, ActivarPopUpGatewayIP, ActivarPopUpAutoNumber,
  });
})();
