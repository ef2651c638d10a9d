// The functions that the WebAssembly module imports. They only hand on to the objects that the host has put on Module,
// and keep JavaScript exceptions from crossing WebAssembly frames, where they would skip every destructor.
mergeInto(LibraryManager.library, {
  zkCanvasReplay: function (commands, count, strings, stringBytes) {
    try {
      commands >>>= 3;
      strings >>>= 0;
      Module['canvas'].replay(HEAPF64.subarray(commands, commands + count), HEAPU8.subarray(strings, strings + stringBytes));
    } catch (error) {
      console.error(error);
    }
  },
  zkCanvasMake: function (width, height) {
    try {
      return Module['canvas'].make(width, height);
    } catch (error) {
      return 0;
    }
  },
  zkCanvasDecode: function (bytes, count, size) {
    try {
      bytes >>>= 0;
      var picture = Module['canvas'].decode(HEAPU8.subarray(bytes, bytes + count));
      HEAP32[size >>> 2] = picture.width;
      HEAP32[(size >>> 2) + 1] = picture.height;
      return picture.id;
    } catch (error) {
      return 0;
    }
  },
  zkCanvasRead: function (surface, pixels, count) {
    try {
      pixels >>>= 0;
      return Module['canvas'].read(surface, HEAPU8.subarray(pixels, pixels + count)) ? 1 : 0;
    } catch (error) {
      return 0;
    }
  },
  zkCanvasMeasure: function (face, text, bytes) {
    try {
      text >>>= 0;
      return Module['canvas'].measure(face, HEAPU8.subarray(text, text + bytes));
    } catch (error) {
      return 0;
    }
  },
  zkLocaleFormatNumber: function (value, code, codeBytes, digits, out, capacity) {
    try {
      code >>>= 0;
      out >>>= 0;
      var text = Module['locale'].formatNumber(value, code ? HEAPU8.subarray(code, code + codeBytes) : null, digits);
      if (text.length <= capacity) HEAPU8.set(text, out);
      return text.length;
    } catch (error) {
      return 0;
    }
  },
  zkLocaleMonthNamed: function (text, bytes) {
    try {
      text >>>= 0;
      return Module['locale'].monthNamed(HEAPU8.subarray(text, text + bytes));
    } catch (error) {
      return 0;
    }
  },
  zkLocaleMonthsPerYear: function () {
    try {
      return Module['locale'].monthsPerYear();
    } catch (error) {
      return 12;
    }
  },
});
