// validacion.js: the field checks and key filters that the configuration pages of the
// headend call from their controls (onkeypress, onblur). A value the unit cannot take is
// never changed or repaired here: the field is marked as refused, with a line saying why,
// and the page cannot be applied until the operator corrects it.
'use strict';

(() => {
  // Character sets the page markup names in its key filters.
  const numeros = '0123456789';
  const puntuacion = '.';
  const caracteres = 'abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ';
  const hexadecimal = '0123456789abcdefABCDEF';
  const caracteresIPs = '0123456789.';

  const CLASE_RECHAZO = 'campo-rechazado';
  const CLASE_MENSAJE = 'mensaje-rechazo';

  // The message span that follows a refused field, if any.
  function mensajeDe(campo) {
    const siguiente = campo.nextElementSibling;
    return siguiente && siguiente.matches(`span.${CLASE_MENSAJE}`) ? siguiente : null;
  }

  // Marks the field as refused with the reason, or clears the mark when `motivo` is empty.
  // Returns whether the value is accepted.
  function marca(campo, motivo) {
    let mensaje = mensajeDe(campo);
    if (!motivo) {
      campo.classList.remove(CLASE_RECHAZO);
      campo.removeAttribute('aria-invalid');
      mensaje?.remove();
      return true;
    }
    campo.classList.add(CLASE_RECHAZO);
    campo.setAttribute('aria-invalid', 'true');
    if (!mensaje) {
      mensaje = document.createElement('span');
      mensaje.className = CLASE_MENSAJE;
      mensaje.setAttribute('role', 'alert');
      campo.after(mensaje);
    }
    mensaje.textContent = motivo;
    return false;
  }

  // A key typed into a filtered field: only printable characters are filtered; editing and
  // navigation keys, and shortcuts with Ctrl or Meta, always pass.
  function caracterTecleado(event) {
    if (!event || event.ctrlKey || event.metaKey || event.altKey) return null;
    if (typeof event.key === 'string') return event.key.length === 1 ? event.key : null;
    const codigo = event.which || event.keyCode || 0;
    return codigo >= 32 ? String.fromCharCode(codigo) : null;
  }

  function Permitekeypress(event, permitidos) {
    const c = caracterTecleado(event);
    return c === null || String(permitidos ?? '').includes(c);
  }

  // Channel names travel in lists joined by '_' when the page is saved, so '_' cannot be part
  // of a name.
  function FiltraSubrayadokeypress(event) {
    return caracterTecleado(event) !== '_';
  }

  const ENTERO = /^\d+$/;

  function ValidarEntero(campo, min, max) {
    const minimo = Number(min);
    const maximo = Number(max);
    const v = campo.value;
    const ok = ENTERO.test(v) && Number(v) >= minimo && Number(v) <= maximo;
    return marca(campo, ok ? '' : `Enter a whole number from ${minimo} to ${maximo}`);
  }

  function ValidarPID(campo, min, max) {
    const minimo = Number(min);
    const maximo = Number(max);
    const v = campo.value;
    const ok = ENTERO.test(v) && Number(v) >= minimo && Number(v) <= maximo;
    return marca(campo, ok ? '' : `Enter a PID (a whole number) from ${minimo} to ${maximo}`);
  }

  // A number with at most `decimales` digits after the point, within min..max (both given as
  // text, e.g. '1' and '7.2').
  function ValidarEnteroConDecimales(campo, min, max, decimales) {
    const n = Math.max(0, Number.parseInt(decimales, 10) || 0);
    const forma = n > 0 ? new RegExp(`^\\d+(\\.\\d{1,${n}})?$`) : ENTERO;
    const v = campo.value;
    const ok = forma.test(v) && Number(v) >= Number(min) && Number(v) <= Number(max);
    const detalle = n > 0 ? `, with at most ${n} decimal${n === 1 ? '' : 's'}` : ' (no decimals)';
    return marca(campo, ok ? '' : `Enter a number from ${min} to ${max}${detalle}`);
  }

  // A frequency (or channel) in min..max, decimals allowed; `rotulo` names the field.
  function ValidarFrecuencia(campo, min, max, rotulo) {
    const v = campo.value;
    const ok = /^\d+(\.\d+)?$/.test(v) && Number(v) >= Number(min) && Number(v) <= Number(max);
    const nombre = rotulo ? `${rotulo}: e` : 'E';
    return marca(campo, ok ? '' : `${nombre}nter a number from ${min} to ${max}`);
  }

  // Hexadecimal fields show a fixed "0x" caption before them; the value is the digits only.
  // The bounds come as '0x1' and '0xffff'.
  const HEXA = /^[0-9a-fA-F]+$/;
  const hexaTexto = (n) => `0x${n.toString(16).toUpperCase()}`;

  function leeHexa(texto) {
    const t = String(texto ?? '').trim().replace(/^0[xX]/, '');
    return HEXA.test(t) ? Number.parseInt(t, 16) : Number.NaN;
  }

  function ValidarHexa(campo, min, max) {
    const minimo = leeHexa(min);
    const maximo = leeHexa(max);
    const v = campo.value;
    const n = HEXA.test(v) ? Number.parseInt(v, 16) : Number.NaN;
    const ok = n >= minimo && n <= maximo;
    return marca(campo, ok ? '' :
      `Enter a hexadecimal number (digits 0-9, A-F) from ${hexaTexto(minimo)} to ${hexaTexto(maximo)}`);
  }

  // As ValidarHexa, but the values from excluidoMin to excluidoMax (a reserved range inside
  // min..max) are refused too.
  function ValidarHexaFiltro(campo, min, max, excluidoMin, excluidoMax) {
    const minimo = leeHexa(min);
    const maximo = leeHexa(max);
    const desde = leeHexa(excluidoMin);
    const hasta = leeHexa(excluidoMax);
    const v = campo.value;
    const n = HEXA.test(v) ? Number.parseInt(v, 16) : Number.NaN;
    const ok = n >= minimo && n <= maximo && !(n >= desde && n <= hasta);
    return marca(campo, ok ? '' :
      `Enter a hexadecimal number (digits 0-9, A-F) from ${hexaTexto(minimo)} to ${hexaTexto(maximo)}, ` +
      `outside ${hexaTexto(desde)} to ${hexaTexto(hasta)}`);
  }

  // Dotted IPv4 address: four numbers 0..255 without leading zeros (010 would be read as
  // octal by some tools, so it is refused rather than guessed).
  const OCTETO = /^(0|[1-9]\d{0,2})$/;

  function esIP(texto) {
    const partes = String(texto).split('.');
    return partes.length === 4 && partes.every((p) => OCTETO.test(p) && Number(p) <= 255);
  }

  function ValidarIPOnBlur(campo) {
    return marca(campo, esIP(campo.value) ? '' :
      'Enter an IP address as four numbers from 0 to 255 separated by dots, e.g. 192.168.1.10');
  }

  // Text of at most `longitud` characters, every one of them among `permitidos`.
  function ValidarCadena(campo, longitud, permitidos) {
    const n = Number(longitud);
    const v = campo.value;
    const ajenos = [...new Set([...v].filter((c) => !String(permitidos ?? '').includes(c)))];
    let motivo = '';
    if (ajenos.length)
      motivo = `Not allowed here: ${ajenos.map((c) => (c === ' ' ? 'space' : `"${c}"`)).join(' ')}. ` +
        `Use letters and digits, at most ${n} characters`;
    else if ([...v].length > n)
      motivo = `Use at most ${n} characters`;
    return marca(campo, motivo);
  }

  function ValidarNombrecanal(campo, longitud) {
    const n = Number(longitud);
    const v = campo.value;
    let motivo = '';
    if (v.includes('_'))
      motivo = `A channel name cannot contain "_"; use at most ${n} characters`;
    else if ([...v].length > n)
      motivo = `A channel name has at most ${n} characters`;
    return marca(campo, motivo);
  }

  // The refused fields of the page on screen: the page cannot be applied while any is left.
  function camposRechazados() {
    const contenido = document.getElementById('contenido');
    return contenido ? [...contenido.querySelectorAll(`.${CLASE_RECHAZO}`)] : [];
  }

  Object.assign(window, {
    numeros, puntuacion, caracteres, hexadecimal, caracteresIPs,
    Permitekeypress, FiltraSubrayadokeypress,
    ValidarEntero, ValidarEnteroConDecimales, ValidarHexa, ValidarHexaFiltro, ValidarPID,
    ValidarIPOnBlur, ValidarFrecuencia, ValidarCadena, ValidarNombrecanal,
    camposRechazados,
  });
})();
