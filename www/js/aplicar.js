// aplicar.js: the "Apply selected" button of the configuration pages. It sends every
// selected unit row (its forzarconfig box ticked) to the CGI's save command of the page,
// one unit per request, while holding the page lock, so the web pages, the front panel and
// the control daemon never change a unit at the same time. What each unit answered stays
// on screen in #resultado, also after the page is loaded again with the saved values. The
// saved units stay pending (their Select box ticked) until the control daemon has applied
// them: the page comes again every few seconds until it has, so the operator sees it happen.
'use strict';

(() => {
  const CGI = 'cgi-bin/cambioIP.cgi';

  // Configuration route -> the CGI command that saves one unit of it.
  const GUARDADOS = { network: 4, inputs: 11, transport: 20, output: 21, test: 22, ip: 28 };

  // Controls whose name on the page differs from the key the save reads.
  const RENOMBRES = { 4: { dhcpcheck: 'dhcp' } };

  // A request that has not been answered after this long is given up (the lock is still
  // released); a CGI save of one unit takes well under a second.
  const ESPERA_MS = 30000;

  // A unit's controls end in its address as _ddd_ddd_ddd_ddd; the master's carry nothing.
  const SUFIJO = /_\d{3}_\d{3}_\d{3}_\d{3}$/;
  // A per-line control: base name followed by the line number (eon2, outputIP1).
  const POR_LINEA = /^([A-Za-z]+)(\d+)$/;
  // The twin that remembers the value the page was painted with.
  const GEMELO = /^anterior([A-Za-z]+)$/;

  const contenido = document.getElementById('contenido');

  let bloqueoTomado = false; // the web lock is ours right now
  let peticionActual = null; // AbortController of the request in flight
  let ejecucion = 0; // number of the apply run in progress; 0 when none
  let resultadoPendiente = null; // { ruta, html, error, aplicadas, vueltas } shown again after the reload

  // Following the saved units until the daemon has applied them: the page is loaded again
  // this often, at most this many times, while the operator leaves it untouched.
  const SEGUIMIENTO_MS = 3000;
  const SEGUIMIENTO_VUELTAS = 20;
  let seguimiento = null; // AbortController of the follow-up under way

  // The part of a CGI answer between <body> and </body>.
  function cuerpoDe(html) {
    const inicio = html.indexOf('<body>');
    const fin = html.lastIndexOf('</body>');
    return (inicio < 0 ? html : html.slice(inicio + 6, fin < 0 ? html.length : fin)).trim();
  }

  // One request to the CGI, given up after ESPERA_MS or when the operator leaves the page.
  async function pide(url, opciones = {}) {
    const control = new AbortController();
    peticionActual = control;
    const reloj = setTimeout(() => control.abort(new Error('no answer within 30 s')), ESPERA_MS);
    try {
      const respuesta = await fetch(url, { ...opciones, cache: 'no-store', signal: control.signal });
      if (!respuesta.ok)
        throw new Error(`the web server answered ${respuesta.status}`);
      return await respuesta.text();
    } catch (error) {
      if (control.signal.aborted && control.signal.reason instanceof Error)
        throw control.signal.reason;
      throw error;
    } finally {
      clearTimeout(reloj);
      if (peticionActual === control)
        peticionActual = null;
    }
  }

  // Releases the web lock. While the page stays, it waits for the CGI's answer; when the
  // page goes away, the request is handed to the browser so it is sent all the same.
  async function liberaBloqueo({ saliendo = false } = {}) {
    if (!bloqueoTomado)
      return;
    bloqueoTomado = false;
    if (saliendo) {
      const cuerpo = new URLSearchParams({ command: '6' });
      if (!(navigator.sendBeacon && navigator.sendBeacon(CGI, cuerpo)))
        fetch(CGI, { method: 'POST', body: cuerpo, keepalive: true }).catch(() => {});
      return;
    }
    try {
      await pide(`${CGI}?command=6`);
    } catch {
      // Nothing more can be done from here; the next apply takes the lock again anyway.
    }
  }

  // The selected units, in row order: suffix ('' for the master) and its select box.
  function unidadesMarcadas() {
    const unidades = [];
    for (const caja of contenido.querySelectorAll('input[type="checkbox"][name^="forzarconfig"]')) {
      const sufijo = caja.name.slice('forzarconfig'.length);
      if (sufijo !== '' && !SUFIJO.test(sufijo))
        continue;
      if (caja.checked)
        unidades.push(sufijo);
    }
    return unidades;
  }

  function valorDe(control) {
    if (control.type === 'checkbox' || control.type === 'radio')
      return control.checked ? '1' : '0';
    return control.value;
  }

  // A save's form from the controls: the command and the unit's name first (the CGI takes the
  // first "sufijo" anywhere in the form, so no value may come before it), then each control
  // under the base name `baseDe` gives it (null leaves it out); per-line controls joined into
  // "<line>_<value>_<line>_<value>"; a value the page keeps only in its twin (the number of
  // inputs, whether the unit has IP), or in `gemelos`, taken from there unless listed in
  // `sinGemelo`.
  function formularioControles(controles, baseDe,
    { comando, sufijo, renombres = {}, gemelos = new Map(), sinGemelo = [] }) {
    const simples = new Map();
    const lineas = new Map();
    for (const control of controles) {
      if (['button', 'submit', 'reset', 'image', 'file'].includes(control.type))
        continue;
      const base = baseDe(control.name);
      if (base === null)
        continue;
      const gemelo = GEMELO.exec(base);
      if (gemelo) {
        gemelos.set(gemelo[1], control.value);
        continue;
      }
      const linea = POR_LINEA.exec(base);
      if (linea) {
        const clave = renombres[linea[1]] || linea[1];
        if (!lineas.has(clave))
          lineas.set(clave, []);
        lineas.get(clave).push([Number(linea[2]), valorDe(control)]);
      } else if (/^[A-Za-z]+$/.test(base)) {
        simples.set(renombres[base] || base, valorDe(control));
      }
    }
    const formulario = new URLSearchParams({ command: String(comando), sufijo });
    for (const [clave, valor] of simples)
      formulario.append(clave, valor);
    for (const [clave, pares] of lineas) {
      if (simples.has(clave))
        continue;
      pares.sort((a, b) => a[0] - b[0]);
      formulario.append(clave, pares.map(([n, v]) => `${n}_${v}`).join('_'));
    }
    for (const [clave, valor] of gemelos)
      if (!simples.has(clave) && !lineas.has(clave) && !sinGemelo.includes(clave))
        formulario.append(clave, valor);
    return formulario;
  }

  // The save's form for one unit of the page: its controls, without the all-units row and
  // the select boxes, and the unit's name.
  function formularioDe(sufijo, comando) {
    const controles = contenido.querySelectorAll('input[name], select[name], textarea[name]');
    const formulario = formularioControles(controles, (nombre) => {
      const propio = sufijo === '' ? !SUFIJO.test(nombre) : nombre.endsWith(sufijo);
      const base = nombre.slice(0, nombre.length - sufijo.length);
      return propio && !base.endsWith('_all') && !base.startsWith('forzarconf') ? base : null;
    // The save drops the first character: ".010.000.000.021" names network.010.000.000.021.xml.
    }, { comando, sufijo: sufijo.replaceAll('_', '.'), renombres: RENOMBRES[comando] || {} });
    return formulario;
  }

  function nombreUnidad(sufijo) {
    if (sufijo === '')
      return 'master';
    return sufijo.slice(1).split('_').map(Number).join('.');
  }

  function panel() {
    let resultado = document.getElementById('resultado');
    if (!resultado) {
      resultado = document.createElement('div');
      resultado.id = 'resultado';
      resultado.setAttribute('role', 'status');
      const boton = contenido.querySelector('button.aplicar');
      if (boton)
        boton.after(resultado);
      else
        contenido.prepend(resultado);
    }
    return resultado;
  }

  function muestra(texto, { error = false, reintento = null } = {}) {
    const resultado = panel();
    resultado.replaceChildren();
    resultado.classList.toggle('error', error);
    const parrafo = document.createElement('p');
    parrafo.className = 'mensaje-aplicar';
    parrafo.textContent = texto;
    resultado.append(parrafo);
    if (reintento) {
      const boton = document.createElement('button');
      boton.type = 'button';
      boton.className = 'reintentar';
      boton.textContent = 'Retry';
      boton.addEventListener('click', reintento);
      resultado.append(boton);
    }
  }

  // What the refusing check reports, as names the operator can find on the page.
  function rechazados() {
    if (typeof window.camposRechazados !== 'function')
      return [];
    const lista = window.camposRechazados(contenido);
    if (!lista)
      return [];
    return [...lista].map((campo) =>
      typeof campo === 'string' ? campo : campo?.name || campo?.id || String(campo));
  }

  async function aplica() {
    if (ejecucion)
      return;
    const ruta = contenido.dataset.ruta;
    const comando = GUARDADOS[ruta];
    if (!comando)
      return;

    const malos = rechazados();
    if (malos.length) {
      muestra(`Nothing was applied: correct these values first: ${malos.join(', ')}.`, { error: true });
      return;
    }
    const unidades = unidadesMarcadas();
    if (!unidades.length) {
      muestra('No unit is selected: tick the Select box of the units to apply.');
      return;
    }
    seguimiento?.abort();
    // The forms are read now, before anything can change the page.
    const formularios = unidades.map((sufijo) => ({ sufijo, formulario: formularioDe(sufijo, comando) }));

    const esta = ++ejecucion;
    const boton = contenido.querySelector('button.aplicar');
    if (boton)
      boton.disabled = true;
    const resultado = panel();
    resultado.classList.remove('error');
    resultado.replaceChildren();
    let recargar = null; // the select boxes of the units saved, once the run has ended
    try {
      let respuesta;
      // Counted as ours from the moment it is asked for: if the answer is lost, the program may
      // have taken it all the same, and the release below hands it back.
      bloqueoTomado = true;
      try {
        respuesta = await pide(`${CGI}?command=5`);
      } catch (error) {
        muestra(`The page lock could not be taken: ${error.message}.`, { error: true });
        return;
      }
      if (respuesta === '1') {
        bloqueoTomado = false; // refused: the lock is not ours to release
        muestra('The front panel or the control daemon is busy; try again.', { error: true, reintento: aplica });
        return;
      }
      if (respuesta !== '0') {
        muestra(`The page lock could not be taken: unexpected answer "${respuesta.slice(0, 80)}".`, { error: true });
        return;
      }

      let fallos = 0;
      const aplicadas = [];
      for (const [i, { sufijo, formulario }] of formularios.entries()) {
        if (esta !== ejecucion)
          return;
        const linea = document.createElement('div');
        linea.className = 'unidad-aplicada';
        linea.dataset.unidad = nombreUnidad(sufijo);
        try {
          const html = cuerpoDe(await pide(CGI, { method: 'POST', body: formulario }));
          const fallida = html.includes('ERROR!');
          linea.dataset.estado = fallida ? 'fallo' : 'ok';
          linea.innerHTML = html;
          if (fallida)
            fallos++;
          else
            aplicadas.push(`forzarconfig${sufijo}`);
        } catch (error) {
          if (esta !== ejecucion)
            return;
          linea.dataset.estado = 'fallo';
          linea.textContent = `Unit ${nombreUnidad(sufijo)}: not applied: ${error.message}.` +
            (i + 1 < formularios.length ? ' The units after it were not sent.' : '');
          resultado.append(linea);
          fallos++;
          break;
        }
        resultado.append(linea);
      }
      resultado.classList.toggle('error', fallos > 0);
      recargar = aplicadas;
    } finally {
      if (esta === ejecucion) {
        await liberaBloqueo();
        if (boton)
          boton.disabled = false;
      }
      // The operator may have left while the lock was being released: then the new
      // page is already coming and this run leaves it alone.
      if (esta === ejecucion) {
        ejecucion = 0;
        if (recargar) {
          // The page comes again with the saved values; the answers stay on screen.
          resultadoPendiente = { ruta, html: resultado.innerHTML, error: resultado.classList.contains('error'),
            aplicadas: recargar, vueltas: 0 };
          window.dispatchEvent(new HashChangeEvent('hashchange'));
        }
      }
    }
  }

  // After an apply: whether the saved units are still pending, as the page was painted; if
  // they are, the page comes again a little later, unless the operator edits it, leaves it
  // or applies again.
  function sigue(pendiente, resultado) {
    seguimiento?.abort();
    seguimiento = null;
    const pendientes = pendiente.aplicadas.filter((nombre) =>
      contenido.querySelector(`input[type="checkbox"][name="${nombre}"]`)?.defaultChecked);
    const linea = document.createElement('p');
    linea.className = 'seguimiento';
    resultado.append(linea);
    if (!pendientes.length) {
      linea.textContent = 'The rack has applied the changes.';
      return;
    }
    const unidades = pendientes.map((nombre) => nombreUnidad(nombre.slice('forzarconfig'.length))).join(', ');
    if (pendiente.vueltas >= SEGUIMIENTO_VUELTAS) {
      linea.textContent = `Still pending after ${SEGUIMIENTO_VUELTAS * SEGUIMIENTO_MS / 1000} s: ${unidades}. ` +
        'Load the page again later to see whether the rack has applied them.';
      return;
    }
    linea.textContent = `Waiting for the rack to apply the changes (pending: ${unidades}).`;
    const control = new AbortController();
    seguimiento = control;
    const tocada = () => {
      control.abort();
      linea.textContent = `The page was edited, so it is not loaded again (pending: ${unidades}).`;
    };
    contenido.addEventListener('input', tocada, { signal: control.signal });
    contenido.addEventListener('change', tocada, { signal: control.signal });
    const reloj = setTimeout(() => {
      control.abort();
      if (ejecucion || contenido.dataset.ruta !== pendiente.ruta)
        return;
      resultadoPendiente = { ...pendiente, vueltas: pendiente.vueltas + 1 };
      window.dispatchEvent(new HashChangeEvent('hashchange'));
    }, SEGUIMIENTO_MS);
    control.signal.addEventListener('abort', () => clearTimeout(reloj));
  }

  // Leaving while an apply is under way: stop it and hand the lock back.
  function abandona() {
    seguimiento?.abort();
    if (!ejecucion && !bloqueoTomado)
      return;
    ejecucion = 0;
    peticionActual?.abort(new Error('the page was left'));
    liberaBloqueo({ saliendo: true });
  }

  document.addEventListener('paginacargada', (evento) => {
    const ruta = evento.detail?.ruta;
    const pendiente = resultadoPendiente;
    resultadoPendiente = null;
    seguimiento?.abort();
    seguimiento = null;
    if (!Object.hasOwn(GUARDADOS, ruta) || contenido.querySelector('button.aplicar'))
      return;
    const boton = document.createElement('button');
    boton.type = 'button';
    boton.className = 'aplicar';
    boton.textContent = 'Apply selected';
    boton.addEventListener('click', aplica);
    const tabla = contenido.querySelector('#tabadatos');
    if (tabla && tabla.parentNode)
      tabla.parentNode.insertBefore(boton, tabla);
    else
      contenido.prepend(boton);
    const resultado = panel();
    if (pendiente && pendiente.ruta === ruta) {
      resultado.innerHTML = pendiente.html;
      resultado.classList.toggle('error', pendiente.error);
      if (pendiente.aplicadas.length)
        sigue(pendiente, resultado);
    }
  });

  window.addEventListener('hashchange', abandona);
  window.addEventListener('pagehide', abandona);
  window.addEventListener('beforeunload', abandona);

  // The advanced configuration's save builds its form the same way.
  window.formularioControles = formularioControles;
})();
