// Pictures that the build takes in as bytes.
declare module '*.png' {
  const bytes: Uint8Array;
  export default bytes;
}
