// shell.js: the page frame of the headend's web interface. Each menu entry is a route
// (#/output) naming one page of cambioIP.cgi; the shell fetches the page, puts its body in
// the content area and, for the status pages, fetches it again every few seconds while it
// is shown. The browser's back and forward buttons move between routes.
'use strict';

const CGI = 'cgi-bin/cambioIP.cgi';

// Route -> the CGI command that paints it, and whether it is a status page that refreshes.
const RUTAS = {
  quick: { comando: 1, estado: true },
  detailed: { comando: 2, estado: true },
  units: { comando: 15 },
  'units-test': { comando: 16 },
  network: { comando: 3 },
  inputs: { comando: 10 },
  transport: { comando: 12 },
  output: { comando: 13 },
  ip: { comando: 17 },
  test: { comando: 14 },
};
const RUTA_INICIAL = 'quick';

const contenido = document.getElementById('contenido');
const cargando = document.getElementById('cargando');
const aviso = document.getElementById('aviso');
const periodo = document.getElementById('periodo-refresco');
const pausa = document.getElementById('pausa-refresco');

// Every request the shell makes carries a number; an answer that arrives after a newer
// request was made is dropped, so a slow page never replaces the one the user went to.
let ultimaPeticion = 0;
let temporizador = null;

// The part of a CGI answer between <body> and </body>.
function cuerpoDe(html) {
  const inicio = html.indexOf('<body>');
  const fin = html.lastIndexOf('</body>');
  return inicio < 0 ? html : html.slice(inicio + 6, fin < 0 ? html.length : fin);
}

function muestraAviso(texto) {
  aviso.textContent = texto;
  aviso.hidden = !texto;
}

async function pideComando(comando) {
  const respuesta = await fetch(`${CGI}?command=${comando}`, { cache: 'no-store' });
  if (!respuesta.ok)
    throw new Error(`the web server answered ${respuesta.status}`);
  return respuesta.text();
}

function rutaActual() {
  const ruta = location.hash.replace(/^#\/?/, '');
  return Object.hasOwn(RUTAS, ruta) ? ruta : RUTA_INICIAL;
}

// Loads the route's page. A refresh of a status page keeps the page on screen while the
// new one comes; a change of route shows the loading indicator.
async function cargaRuta(ruta, refresco = false) {
  const peticion = ++ultimaPeticion;
  clearTimeout(temporizador);
  if (!refresco) {
    cargando.hidden = false;
    contenido.dataset.estado = 'cargando';
  }
  for (const enlace of document.querySelectorAll('#menu a'))
    enlace.classList.toggle('activo', enlace.getAttribute('href') === `#/${ruta}`);
  try {
    const html = await pideComando(RUTAS[ruta].comando);
    if (peticion !== ultimaPeticion)
      return;
    contenido.innerHTML = cuerpoDe(html);
    contenido.dataset.ruta = ruta;
    contenido.dataset.estado = 'listo';
    muestraAviso('');
    document.dispatchEvent(new CustomEvent('paginacargada', { detail: { ruta } }));
  } catch (error) {
    if (peticion !== ultimaPeticion)
      return;
    contenido.dataset.estado = 'error';
    muestraAviso(`The page could not be loaded: ${error.message}. It is tried again when you choose it.`);
  } finally {
    if (peticion === ultimaPeticion)
      cargando.hidden = true;
  }
  if (peticion === ultimaPeticion)
    programaRefresco(ruta);
}

// Status pages come again after the chosen period, unless the user paused it.
function programaRefresco(ruta) {
  clearTimeout(temporizador);
  if (!RUTAS[ruta].estado || pausa.getAttribute('aria-pressed') === 'true')
    return;
  temporizador = setTimeout(() => cargaRuta(ruta, true), Number(periodo.value) * 1000);
}

// The rack's name and the master's address, from the master's row of the unit list.
async function cargaCabecera() {
  document.getElementById('direccion-master').textContent = location.hostname;
  try {
    const tabla = document.createElement('template');
    tabla.innerHTML = cuerpoDe(await pideComando(15));
    for (const fila of tabla.content.querySelectorAll('tr')) {
      const celdas = fila.querySelectorAll('td');
      if (celdas.length < 4 || !/web connected/.test(celdas[1].textContent))
        continue;
      const nombre = celdas[2].textContent.trim();
      document.getElementById('nombre-rack').textContent = nombre;
      document.getElementById('direccion-master').textContent = celdas[3].textContent.trim();
      document.title = `${nombre} - Headend`;
    }
  } catch {
    // The header keeps its defaults; the page itself reports what failed.
  }
}

function preferencias() {
  const guardado = localStorage.getItem('periodoRefresco');
  if (guardado && [...periodo.options].some((o) => o.value === guardado))
    periodo.value = guardado;
  if (localStorage.getItem('refrescoPausado') === 'true')
    pausa.setAttribute('aria-pressed', 'true');
  pausa.textContent = pausa.getAttribute('aria-pressed') === 'true' ? 'Resume' : 'Pause';
}

periodo.addEventListener('change', () => {
  localStorage.setItem('periodoRefresco', periodo.value);
  programaRefresco(rutaActual());
});
pausa.addEventListener('click', () => {
  const pausado = pausa.getAttribute('aria-pressed') !== 'true';
  pausa.setAttribute('aria-pressed', String(pausado));
  pausa.textContent = pausado ? 'Resume' : 'Pause';
  localStorage.setItem('refrescoPausado', String(pausado));
  programaRefresco(rutaActual());
});
window.addEventListener('hashchange', () => cargaRuta(rutaActual()));

preferencias();
cargaCabecera();
cargaRuta(rutaActual());
