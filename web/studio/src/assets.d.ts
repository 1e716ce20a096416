declare module "*.pgm" {
  const url: string;
  export default url;
}
