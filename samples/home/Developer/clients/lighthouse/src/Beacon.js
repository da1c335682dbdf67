export const flashes = (seconds) => Math.floor(seconds / 5);
